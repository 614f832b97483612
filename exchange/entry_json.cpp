#include <exchange/entry_json.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

using Json = nlohmann::ordered_json;

template <class E>
Json enumeration(const EnumTextMapping<E>& texts, E value) {
  for (const auto& [known, text] : texts) {
    if (known == value) return text;
  }
  return static_cast<std::int32_t>(value);
}

template <class Printable>
std::string printed(const Printable& value) {
  std::ostringstream os;
  value.print(os);
  return os.str();
}

Json json_of(const Cell& cell) {
  Json operators = Json::array();
  for (const CrystalSymmetryOperator& symmetry_operator : *cell.symmetry_operators()) {
    operators.push_back(symmetry_operator.xyz());
  }
  return {{"a", cell.a()},           {"b", cell.b()},
          {"c", cell.c()},           {"alpha", cell.alpha()},
          {"beta", cell.beta()},     {"gamma", cell.gamma()},
          {"volume", cell.volume()}, {"symmetry_operators", operators}};
}

Json json_of(const CrystalMaker& crystal) {
  Json atoms = Json::array();
  for (const auto& atom : crystal.atoms()) {
    atoms.push_back({{"label", atom->label},
                     {"element", atom->element},
                     {"x", atom->position.x},
                     {"y", atom->position.y},
                     {"z", atom->position.z},
                     {"occupancy", atom->occupancy}});
  }
  return {{"cell", json_of(*crystal.cell())}, {"atoms", atoms}};
}

Json json_of(const Publication& publication) {
  return {{"authors", publication.authors},
          {"journal",
           {{"coden", publication.journal.coden()},
            {"international_coden", publication.journal.international_coden()},
            {"name", publication.journal.name()}}},
          {"volume", publication.volume},
          {"year", publication.year},
          {"page", publication.page}};
}

Json json_of(const ExperimentalInfo& info) {
  return {
      {"temperature", info.temperature},
      {"temperature_text", info.temperature_text},
      {"pressure", info.pressure},
      {"experimental_density", info.experimental_density},
      {"calculated_density", info.calculated_density},
      {"r_factor", info.r_factor},
      {"mean_cc_bond_sigma",
       {{"lower", info.mean_cc_bond_sigma.lower()},
        {"lower_condition", static_cast<int>(info.mean_cc_bond_sigma.lower_condition())},
        {"upper", info.mean_cc_bond_sigma.upper()},
        {"upper_condition", static_cast<int>(info.mean_cc_bond_sigma.upper_condition())}}},
      {"probe", enumeration(*ExperimentalInfo::radiation_probe_text(), info.probe)},
      {"radiation_source", info.radiation_source},
      {"absolute_configuration", info.absolute_configuration},
      {"diffraction_details", info.diffraction_details},
      {"powder", enumeration(*ExperimentalInfo::powder_text(), info.powder)},
      {"refinement_details", info.refinement_details},
      {"intensity_method", enumeration(*ExperimentalInfo::intensity_method_text(), info.intensity_method)}};
}

Json json_of(const EditorsInfo& info) {
  return {{"accession_date", printed(info.accession_date)},
          {"modification_date", printed(info.modification_date)},
          {"category", enumeration(*EditorsInfo::category_text(), info.category)},
          {"bonding_tolerance", info.bonding_tolerance},
          {"previous_refcode", info.previous_refcode},
          {"aser_match_flag", enumeration(*EditorsInfo::aser_match_flag_text(), info.aser_match_flag)},
          {"connectivity_comment", info.connectivity_comment},
          {"batch", info.batch},
          {"memo", info.memo},
          {"remarks", info.remarks},
          {"author_correspondence",
           enumeration(*EditorsInfo::author_correspondence_text(), info.author_correspondence)},
          {"ignored_errors", enumeration(*EditorsInfo::ignored_errors_text(), info.ignored_errors)}};
}

Json json_of(const ChemicalInfo& info) {
  Json classifiers = Json::array();
  for (const ChemicalClassification& classifier : info.classifiers) classifiers.push_back(classifier.str());
  return {{"formula", info.formula},         {"name", info.name},
          {"bioactivity", info.bioactivity}, {"conformer", info.conformer},
          {"source", info.source},           {"peptide_sequence", info.peptide_sequence},
          {"isomer", info.isomer},           {"classifiers", classifiers},
          {"synonyms", info.synonyms}};
}

Json json_of(const CrystalInfo& info) {
  return {{"z", info.z},
          {"z_prime", info.z_prime},
          {"color", info.color},
          {"habit", info.habit},
          {"analogues", info.analogues},
          {"melting_point", info.melting_point},
          {"notes", info.notes},
          {"phase_transitions", info.phase_transitions},
          {"polymorph", info.polymorph},
          {"sensitivity", info.sensitivity},
          {"recrystallisation_solvent", info.recrystallisation_solvent},
          {"disorder_details", info.disorder_details},
          {"other_cell_details", info.other_cell_details}};
}

Json json_of(const ConnectivityInfo& info) {
  return {{"atoms", info.connectivity()->atoms.size()}, {"bonds", info.connectivity()->bonds.size()}};
}

Json json_of(const CrossReferenceInfo& info) {
  const auto types = DatabaseCrossReference::cross_reference_type_text();
  Json references = Json::array();
  for (const DatabaseCrossReference& reference : info) {
    std::vector<DatabaseEntryIdentifier> identifiers;
    reference.identifiers(identifiers);
    Json names = Json::array();
    for (const DatabaseEntryIdentifier& identifier : identifiers) names.push_back(identifier.text());
    references.push_back({{"type", enumeration(*types, reference.type())},
                          {"text", reference.text()},
                          {"identifiers", names}});
  }
  return references;
}

// The first text of every kind that has one.
Json json_of(const DepositionInfo& info) {
  Json depositions = Json::array();
  const auto kinds = DepositionInfo::deposition_type_text();
  for (const auto& [kind, name] : *kinds) {
    if (!info.has_text(kind)) continue;
    std::vector<std::string> numbers;
    info.deposition_numbers(kind, numbers);
    depositions.push_back({{"kind", name}, {"text", info.text(kind)}, {"numbers", numbers}});
  }
  return depositions;
}

}  // namespace

nlohmann::ordered_json entry_json(const CrystalStructureDatabaseEntry& entry) {
  const DatabaseEntryIdentifier identifier = entry.identifier();
  return {{"identifier", identifier.text()},
          {"crystal_maker", json_of(*entry.crystal_maker())},
          {"cell", json_of(*entry.cell())},
          {"publication", json_of(*entry.publication())},
          {"experimental_info", json_of(*entry.experimental_info())},
          {"editors_info", json_of(*entry.editors_info())},
          {"chemical_info", json_of(*entry.chemical_info())},
          {"crystal_info", json_of(*entry.crystal_info())},
          {"connectivity_info", json_of(*entry.connectivity_info())},
          {"cross_reference_info", json_of(*entry.cross_reference_info())},
          {"deposition_info", json_of(*entry.deposition_info())}};
}
