#include <capnp/message.h>
#include <capnp/serialize.h>
#include <kj/io.h>

#include <cstring>

#include "capnproto_entry.capnp.h"
#include "storages/framed_storage.h"
#include "storages/storages.h"

namespace {

// Between plain values and a message. A list is put and taken element by element.
template <class List, class Values>
void put_list(List to, const Values& from);
template <class List, class Values>
void take_list(List from, Values& to);

unsigned int count(const auto& values) {
  return static_cast<unsigned int>(values.size());
}

capnp::Text::Reader text(const std::string& value) {
  return {value.data(), value.size()};
}

void take(capnp::Text::Reader from, std::string& to) {
  to.assign(from.begin(), from.size());
}

void put(capnproto_entry::Operator::Builder to, const plain::Operator& from) {
  put_list(to.initRotation(count(from.rotation)), from.rotation);
  put_list(to.initTranslation(count(from.translation)), from.translation);
}

void put(capnproto_entry::Cell::Builder to, const plain::Cell& from) {
  to.setA(from.a);
  to.setB(from.b);
  to.setC(from.c);
  to.setAlpha(from.alpha);
  to.setBeta(from.beta);
  to.setGamma(from.gamma);
  put_list(to.initOperators(count(from.operators)), from.operators);
}

void put(capnproto_entry::Atom::Builder to, const plain::Atom& from) {
  to.setLabel(text(from.label));
  to.setElement(text(from.element));
  to.setX(from.x);
  to.setY(from.y);
  to.setZ(from.z);
  to.setOccupancy(from.occupancy);
}

void put(capnproto_entry::CrystalMaker::Builder to, const plain::CrystalMaker& from) {
  put(to.initCell(), from.cell);
  put_list(to.initAtoms(count(from.atoms)), from.atoms);
}

void put(capnproto_entry::Journal::Builder to, const plain::Journal& from) {
  to.setName(text(from.name));
  to.setCoden(from.coden);
  to.setInternationalCoden(text(from.international_coden));
}

void put(capnproto_entry::Publication::Builder to, const plain::Publication& from) {
  put(to.initJournal(), from.journal);
  put_list(to.initAuthors(count(from.authors)), from.authors);
  to.setVolume(text(from.volume));
  to.setYear(from.year);
  to.setPage(text(from.page));
}

void put(capnproto_entry::Range::Builder to, const plain::Range& from) {
  to.setLowerCondition(from.lower_condition);
  to.setUpperCondition(from.upper_condition);
  to.setLower(from.lower);
  to.setUpper(from.upper);
}

void put(capnproto_entry::ExperimentalInfo::Builder to, const plain::ExperimentalInfo& from) {
  to.setTemperature(from.temperature);
  to.setTemperatureText(text(from.temperature_text));
  to.setPressure(text(from.pressure));
  to.setExperimentalDensity(from.experimental_density);
  to.setCalculatedDensity(from.calculated_density);
  to.setRFactor(from.r_factor);
  put(to.initMeanCcBondSigma(), from.mean_cc_bond_sigma);
  to.setProbe(from.probe);
  to.setRadiationSource(text(from.radiation_source));
  to.setAbsoluteConfiguration(from.absolute_configuration);
  to.setDiffractionDetails(text(from.diffraction_details));
  to.setPowder(from.powder);
  to.setRefinementDetails(text(from.refinement_details));
  to.setIntensityMethod(from.intensity_method);
}

void put(capnproto_entry::Date::Builder to, const plain::Date& from) {
  to.setYear(from.year);
  to.setMonth(from.month);
  to.setDay(from.day);
}

void put(capnproto_entry::EditorsInfo::Builder to, const plain::EditorsInfo& from) {
  put(to.initAccessionDate(), from.accession_date);
  put(to.initModificationDate(), from.modification_date);
  to.setCategory(from.category);
  to.setBondingTolerance(from.bonding_tolerance);
  to.setPreviousRefcode(text(from.previous_refcode));
  to.setAserMatchFlag(from.aser_match_flag);
  to.setConnectivityComment(text(from.connectivity_comment));
  to.setBatch(from.batch);
  to.setMemo(text(from.memo));
  to.setRemarks(text(from.remarks));
  to.setAuthorCorrespondence(from.author_correspondence);
  to.setIgnoredErrors(from.ignored_errors);
}

void put(capnproto_entry::ChemicalInfo::Builder to, const plain::ChemicalInfo& from) {
  to.setFormula(text(from.formula));
  to.setName(text(from.name));
  to.setBioactivity(text(from.bioactivity));
  to.setConformer(text(from.conformer));
  to.setSource(text(from.source));
  to.setPeptideSequence(text(from.peptide_sequence));
  to.setIsomer(text(from.isomer));
  put_list(to.initClassifiers(count(from.classifiers)), from.classifiers);
  put_list(to.initSynonyms(count(from.synonyms)), from.synonyms);
}

void put(capnproto_entry::CrystalInfo::Builder to, const plain::CrystalInfo& from) {
  to.setZ(from.z);
  to.setZPrime(from.z_prime);
  to.setColor(text(from.color));
  to.setHabit(text(from.habit));
  to.setAnalogues(text(from.analogues));
  to.setMeltingPoint(text(from.melting_point));
  to.setNotes(text(from.notes));
  to.setPhaseTransitions(text(from.phase_transitions));
  to.setPolymorph(text(from.polymorph));
  to.setSensitivity(text(from.sensitivity));
  to.setRecrystallisationSolvent(text(from.recrystallisation_solvent));
  to.setDisorderDetails(text(from.disorder_details));
  to.setOtherCellDetails(text(from.other_cell_details));
}

void put(capnproto_entry::ConnectivityAtom::Builder to, const plain::ConnectivityAtom& from) {
  to.setElement(text(from.element));
  to.setLabel(text(from.label));
  to.setCharge(from.charge);
  to.setHydrogenCount(from.hydrogen_count);
}

void put(capnproto_entry::ConnectivityBond::Builder to, const plain::ConnectivityBond& from) {
  to.setFirst(from.first);
  to.setSecond(from.second);
  to.setType(from.type);
}

void put(capnproto_entry::Connectivity::Builder to, const plain::Connectivity& from) {
  put_list(to.initAtoms(count(from.atoms)), from.atoms);
  put_list(to.initBonds(count(from.bonds)), from.bonds);
}

void put(capnproto_entry::TypedText::Builder to, const plain::TypedText& from) {
  to.setType(from.type);
  to.setText(text(from.text));
}

void put(capnproto_entry::Entry::Builder to, const plain::Entry& from) {
  to.setIdentifier(text(from.identifier));
  put(to.initCrystalMaker(), from.crystal_maker);
  put(to.initCell(), from.cell);
  put(to.initPublication(), from.publication);
  put(to.initExperimentalInfo(), from.experimental_info);
  put(to.initEditorsInfo(), from.editors_info);
  put(to.initChemicalInfo(), from.chemical_info);
  put(to.initCrystalInfo(), from.crystal_info);
  put(to.initConnectivity(), from.connectivity);
  put_list(to.initCrossReferences(count(from.cross_references)), from.cross_references);
  put_list(to.initDepositions(count(from.depositions)), from.depositions);
}

void take(capnproto_entry::Operator::Reader from, plain::Operator& to) {
  take_list(from.getRotation(), to.rotation);
  take_list(from.getTranslation(), to.translation);
}

void take(capnproto_entry::Cell::Reader from, plain::Cell& to) {
  to.a = from.getA();
  to.b = from.getB();
  to.c = from.getC();
  to.alpha = from.getAlpha();
  to.beta = from.getBeta();
  to.gamma = from.getGamma();
  take_list(from.getOperators(), to.operators);
}

void take(capnproto_entry::Atom::Reader from, plain::Atom& to) {
  take(from.getLabel(), to.label);
  take(from.getElement(), to.element);
  to.x = from.getX();
  to.y = from.getY();
  to.z = from.getZ();
  to.occupancy = from.getOccupancy();
}

void take(capnproto_entry::CrystalMaker::Reader from, plain::CrystalMaker& to) {
  take(from.getCell(), to.cell);
  take_list(from.getAtoms(), to.atoms);
}

void take(capnproto_entry::Journal::Reader from, plain::Journal& to) {
  take(from.getName(), to.name);
  to.coden = from.getCoden();
  take(from.getInternationalCoden(), to.international_coden);
}

void take(capnproto_entry::Publication::Reader from, plain::Publication& to) {
  take(from.getJournal(), to.journal);
  take_list(from.getAuthors(), to.authors);
  take(from.getVolume(), to.volume);
  to.year = from.getYear();
  take(from.getPage(), to.page);
}

void take(capnproto_entry::Range::Reader from, plain::Range& to) {
  to.lower_condition = from.getLowerCondition();
  to.upper_condition = from.getUpperCondition();
  to.lower = from.getLower();
  to.upper = from.getUpper();
}

void take(capnproto_entry::ExperimentalInfo::Reader from, plain::ExperimentalInfo& to) {
  to.temperature = from.getTemperature();
  take(from.getTemperatureText(), to.temperature_text);
  take(from.getPressure(), to.pressure);
  to.experimental_density = from.getExperimentalDensity();
  to.calculated_density = from.getCalculatedDensity();
  to.r_factor = from.getRFactor();
  take(from.getMeanCcBondSigma(), to.mean_cc_bond_sigma);
  to.probe = from.getProbe();
  take(from.getRadiationSource(), to.radiation_source);
  to.absolute_configuration = from.getAbsoluteConfiguration();
  take(from.getDiffractionDetails(), to.diffraction_details);
  to.powder = from.getPowder();
  take(from.getRefinementDetails(), to.refinement_details);
  to.intensity_method = from.getIntensityMethod();
}

void take(capnproto_entry::Date::Reader from, plain::Date& to) {
  to.year = from.getYear();
  to.month = from.getMonth();
  to.day = from.getDay();
}

void take(capnproto_entry::EditorsInfo::Reader from, plain::EditorsInfo& to) {
  take(from.getAccessionDate(), to.accession_date);
  take(from.getModificationDate(), to.modification_date);
  to.category = from.getCategory();
  to.bonding_tolerance = from.getBondingTolerance();
  take(from.getPreviousRefcode(), to.previous_refcode);
  to.aser_match_flag = from.getAserMatchFlag();
  take(from.getConnectivityComment(), to.connectivity_comment);
  to.batch = from.getBatch();
  take(from.getMemo(), to.memo);
  take(from.getRemarks(), to.remarks);
  to.author_correspondence = from.getAuthorCorrespondence();
  to.ignored_errors = from.getIgnoredErrors();
}

void take(capnproto_entry::ChemicalInfo::Reader from, plain::ChemicalInfo& to) {
  take(from.getFormula(), to.formula);
  take(from.getName(), to.name);
  take(from.getBioactivity(), to.bioactivity);
  take(from.getConformer(), to.conformer);
  take(from.getSource(), to.source);
  take(from.getPeptideSequence(), to.peptide_sequence);
  take(from.getIsomer(), to.isomer);
  take_list(from.getClassifiers(), to.classifiers);
  take_list(from.getSynonyms(), to.synonyms);
}

void take(capnproto_entry::CrystalInfo::Reader from, plain::CrystalInfo& to) {
  to.z = from.getZ();
  to.z_prime = from.getZPrime();
  take(from.getColor(), to.color);
  take(from.getHabit(), to.habit);
  take(from.getAnalogues(), to.analogues);
  take(from.getMeltingPoint(), to.melting_point);
  take(from.getNotes(), to.notes);
  take(from.getPhaseTransitions(), to.phase_transitions);
  take(from.getPolymorph(), to.polymorph);
  take(from.getSensitivity(), to.sensitivity);
  take(from.getRecrystallisationSolvent(), to.recrystallisation_solvent);
  take(from.getDisorderDetails(), to.disorder_details);
  take(from.getOtherCellDetails(), to.other_cell_details);
}

void take(capnproto_entry::ConnectivityAtom::Reader from, plain::ConnectivityAtom& to) {
  take(from.getElement(), to.element);
  take(from.getLabel(), to.label);
  to.charge = from.getCharge();
  to.hydrogen_count = from.getHydrogenCount();
}

void take(capnproto_entry::ConnectivityBond::Reader from, plain::ConnectivityBond& to) {
  to.first = from.getFirst();
  to.second = from.getSecond();
  to.type = from.getType();
}

void take(capnproto_entry::Connectivity::Reader from, plain::Connectivity& to) {
  take_list(from.getAtoms(), to.atoms);
  take_list(from.getBonds(), to.bonds);
}

void take(capnproto_entry::TypedText::Reader from, plain::TypedText& to) {
  to.type = from.getType();
  take(from.getText(), to.text);
}

void take(capnproto_entry::Entry::Reader from, plain::Entry& to) {
  take(from.getIdentifier(), to.identifier);
  take(from.getCrystalMaker(), to.crystal_maker);
  take(from.getCell(), to.cell);
  take(from.getPublication(), to.publication);
  take(from.getExperimentalInfo(), to.experimental_info);
  take(from.getEditorsInfo(), to.editors_info);
  take(from.getChemicalInfo(), to.chemical_info);
  take(from.getCrystalInfo(), to.crystal_info);
  take(from.getConnectivity(), to.connectivity);
  take_list(from.getCrossReferences(), to.cross_references);
  take_list(from.getDepositions(), to.depositions);
}

template <class List, class Values>
void put_list(List to, const Values& from) {
  for (unsigned int index = 0; index < to.size(); ++index) {
    if constexpr (plain::Record<typename Values::value_type>) {
      put(to[index], from[index]);
    } else if constexpr (std::same_as<typename Values::value_type, std::string>) {
      to.set(index, text(from[index]));
    } else {
      to.set(index, from[index]);
    }
  }
}

template <class List, class Values>
void take_list(List from, Values& to) {
  if constexpr (requires { to.resize(from.size()); }) to.resize(from.size());
  for (unsigned int index = 0; index < from.size(); ++index) {
    if constexpr (plain::Record<typename Values::value_type> ||
                  std::same_as<typename Values::value_type, std::string>) {
      take(from[index], to[index]);
    } else {
      to[index] = from[index];
    }
  }
}

class CapnprotoCodec {
 public:
  using Object = plain::Entry;

  // A message must begin in zeros, and leaves zeros after it.
  CapnprotoCodec() { std::memset(first_segment_.begin(), 0, first_segment_.asBytes().size()); }

  static Object convert(const plain::Entry& entry) { return entry; }

  std::string_view encode(const Object& entry) {
    capnp::MallocMessageBuilder message(first_segment_);
    put(message.initRoot<capnproto_entry::Entry>(), entry);
    kj::ArrayOutputStream stream(output_);
    capnp::writeMessage(stream, message);
    const auto written = stream.getArray();
    return {reinterpret_cast<const char*>(written.begin()), written.size()};
  }

  // Words of a message must be aligned; the buffers that bytes come in are.
  static void decode(std::string_view bytes, const auto& use) {
    const auto* words = reinterpret_cast<const capnp::word*>(bytes.data());
    capnp::FlatArrayMessageReader message(kj::arrayPtr(words, bytes.size() / sizeof(capnp::word)));
    plain::Entry entry;
    take(message.getRoot<capnproto_entry::Entry>(), entry);
    use(entry);
  }

 private:
  kj::Array<capnp::word> first_segment_ = kj::heapArray<capnp::word>(32 * 1024);
  kj::Array<kj::byte> output_ = kj::heapArray<kj::byte>(1024 * 1024);
};

}  // namespace

std::unique_ptr<Storage> capnproto_storage(const StoredEntries& entries) {
  return std::make_unique<FramedStorage<CapnprotoCodec>>(entries);
}
