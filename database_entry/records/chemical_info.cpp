#include <database_entry/foundations/field_text.h>
#include <database_entry/records/chemical_info.h>
#include <utilities/archiving/field_list.h>

#include <ostream>

ChemicalInfo::ChemicalInfo(const std::string& the_formula, const std::string& the_name,
                           const std::string& the_bioactivity, const std::string& the_conformer,
                           const std::string& the_source, const std::string& the_peptide_sequence,
                           const std::string& the_isomer,
                           const std::vector<ChemicalClassification>& the_classifiers,
                           const std::vector<std::string>& the_synonyms)
    : formula(the_formula),
      name(the_name),
      bioactivity(the_bioactivity),
      conformer(the_conformer),
      source(the_source),
      peptide_sequence(the_peptide_sequence),
      isomer(the_isomer),
      classifiers(the_classifiers),
      synonyms(the_synonyms) {}

void ChemicalInfo::write(Archive& archive) const {
  write_all_fields(archive, *this);
}

void ChemicalInfo::read(Archive& archive) {
  read_all_fields(archive, *this);
}

void ChemicalInfo::print(std::ostream& os) const {
  print_fields(os, *this);
  os << std::endl;
}

bool ChemicalInfo::operator==(const ChemicalInfo& other) const {
  return equal_fields(*this, other);
}
