// A record made of the bytes: what it writes reads back as its equal, which writes and prints the same.
#include <database_entry/database_entry.h>
#include <reliability/support/memory_stream.h>

#include <stdexcept>

#include "byte_source.h"
#include "entry_point.h"

namespace {

template <class Record>
void expect_round_trip(const Record& record, Record back) {
  std::string bytes;
  try {
    bytes = archived(record);
    read_stream(back, bytes);
  } catch (const std::invalid_argument&) {
    return;  // an enumeration that is no member
  }
  require(archived(back) == bytes, "what was read back writes other bytes");
  require(printed(back) == printed(record), "what was read back prints another text");
  if constexpr (requires { record == record; }) {
    // A NaN makes some records unequal to themselves.
    require((back == record) == (record == record), "what was read back is not equal");
  }
}

template <class Enumeration>
Enumeration enumeration(ByteSource& source, int highest) {
  return static_cast<Enumeration>(source.between(-1, highest + 1));
}

Date date(ByteSource& source) {
  if (source.flag()) return {};
  return {source.between(1900, 2100), source.between(1, 12), source.between(1, 28)};
}

Range<double, DoubleComparator> range(ByteSource& source) {
  return {source.scalar<double>(), enumeration<RangeLimit::LimitCondition>(source, 2),
          source.scalar<double>(), enumeration<RangeLimit::LimitCondition>(source, 2), DoubleComparator()};
}

Publication publication(ByteSource& source) {
  Publication result;
  result.authors = source.list([&] { return source.text(); });
  result.journal = Journal(source.between(1, 256) * 6);
  result.volume = source.text();
  result.year = source.scalar<int>();
  result.page = source.text();
  return result;
}

ExperimentalInfo experimental_info(ByteSource& source) {
  ExperimentalInfo result;
  result.temperature = source.scalar<double>();
  result.temperature_text = source.text();
  result.pressure = source.text();
  result.experimental_density = source.scalar<double>();
  result.calculated_density = source.scalar<double>();
  result.r_factor = source.scalar<double>();
  result.mean_cc_bond_sigma = range(source);
  result.probe = enumeration<ExperimentalInfo::RadiationProbe>(source, 4);
  result.radiation_source = source.text();
  result.absolute_configuration = source.flag();
  result.diffraction_details = source.text();
  result.powder = enumeration<ExperimentalInfo::PowderStudy>(source, 2);
  result.refinement_details = source.text();
  result.intensity_method = enumeration<ExperimentalInfo::IntensityMethod>(source, 3);
  return result;
}

EditorsInfo editors_info(ByteSource& source) {
  EditorsInfo result;
  result.accession_date = date(source);
  result.modification_date = date(source);
  result.category = enumeration<EditorsInfo::EntryCategory>(source, 5);
  result.bonding_tolerance = source.scalar<double>();
  result.previous_refcode = source.text();
  result.aser_match_flag = enumeration<EditorsInfo::AserMatchFlag>(source, 4);
  result.connectivity_comment = source.text();
  result.batch = source.scalar<int>();
  result.memo = source.text();
  result.remarks = source.text();
  result.author_correspondence = enumeration<EditorsInfo::AuthorCorrespondence>(source, 2);
  result.ignored_errors = enumeration<EditorsInfo::IgnoredErrors>(source, 2);
  return result;
}

ChemicalInfo chemical_info(ByteSource& source) {
  ChemicalInfo result;
  for (std::string* text : {&result.formula, &result.name, &result.bioactivity, &result.conformer,
                            &result.source, &result.peptide_sequence, &result.isomer}) {
    *text = source.text();
  }
  result.classifiers = source.list(
      [&] { return ChemicalClassification(enumeration<ChemicalClassification::Classifier>(source, 11)); });
  result.synonyms = source.list([&] { return source.text(); });
  return result;
}

CrystalInfo crystal_info(ByteSource& source) {
  CrystalInfo result;
  result.z = source.scalar<double>();
  result.z_prime = source.scalar<double>();
  for (std::string* text :
       {&result.color, &result.habit, &result.analogues, &result.melting_point, &result.notes,
        &result.phase_transitions, &result.polymorph, &result.sensitivity, &result.recrystallisation_solvent,
        &result.disorder_details, &result.other_cell_details}) {
    *text = source.text();
  }
  return result;
}

CrossReferenceInfo cross_reference_info(ByteSource& source) {
  CrossReferenceInfo result;
  source.list([&] {
    const auto type = static_cast<DatabaseCrossReference::CrossReferenceType>(source.between(1, 6));
    result.insert(DatabaseCrossReference(type, source.text()));
    return 0;
  });
  return result;
}

DepositionInfo deposition_info(ByteSource& source) {
  DepositionInfo result;
  source.list([&] {
    const auto type = static_cast<DepositionInfo::DepositionType>(source.between(0, 11));
    result.set_text(type, source.text());
    return 0;
  });
  return result;
}

}  // namespace

void take(const std::uint8_t* data, std::size_t size) {
  ByteSource source(data, size);
  switch (source.between(0, 6)) {
    case 0:
      expect_round_trip(publication(source), Publication());
      break;
    case 1:
      expect_round_trip(experimental_info(source), ExperimentalInfo());
      break;
    case 2:
      expect_round_trip(editors_info(source), EditorsInfo());
      break;
    case 3:
      expect_round_trip(chemical_info(source), ChemicalInfo());
      break;
    case 4:
      expect_round_trip(crystal_info(source), CrystalInfo());
      break;
    case 5:
      expect_round_trip(cross_reference_info(source), CrossReferenceInfo());
      break;
    case 6:
      expect_round_trip(deposition_info(source), DepositionInfo());
      break;
  }
}
