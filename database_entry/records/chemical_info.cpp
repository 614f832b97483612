#include <database_entry/foundations/sequence_text.h>
#include <database_entry/records/chemical_info.h>
#include <utilities/archiving/field_list.h>

#include <tuple>

namespace {

// In archive order, which is the order of comparison too.
template <class Record>
auto fields(Record& record) {
  return std::tie(record.formula, record.name, record.bioactivity, record.conformer, record.source,
                  record.peptide_sequence, record.isomer, record.classifiers, record.synonyms);
}

}  // namespace

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
  write_fields(archive, fields(*this));
}

void ChemicalInfo::read(Archive& archive) {
  read_fields(archive, fields(*this));
}

void ChemicalInfo::print(std::ostream& os) const {
  os << "formula: " << formula << ", name: " << name << ", bioactivity: " << bioactivity
     << ", conformer: " << conformer << ", source: " << source << ", peptide_sequence: " << peptide_sequence
     << ", isomer: " << isomer << ", classifiers: ";
  print_sequence(os, classifiers, [](std::ostream& stream, const ChemicalClassification& classifier) {
    classifier.print(stream);
  });
  os << ", synonyms: ";
  print_sequence(os, synonyms);
  os << std::endl;
}

bool ChemicalInfo::operator==(const ChemicalInfo& other) const {
  return fields(*this) == fields(other);
}
