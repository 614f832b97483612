#include <database_entry/foundations/enum_range.h>
#include <database_entry/records/chemical_classification.h>
#include <utilities/archiving/field_list.h>

#include <array>
#include <ostream>
#include <string_view>

namespace {

constexpr const char* invalid = "Invalid ChemicalClassification";

// By value.
constexpr std::array<std::string_view, 12> classification_text = {"Error, None",
                                                                  "Carbohydrate",
                                                                  "Nucleoside or Nucleotide",
                                                                  "Amino-acid, peptide and complexes",
                                                                  "Porphyrin, Corrin & Complexes",
                                                                  "Antibiotic",
                                                                  "Steroid",
                                                                  "Terpene",
                                                                  "Alkaloid",
                                                                  "Miscellaneous natural products",
                                                                  "Supramolecular Entity",
                                                                  "High Polymer"};

}  // namespace

std::string ChemicalClassification::str() const {
  require_enum_range(classifier_, none, high_polymer, invalid);
  return std::string(classification_text[static_cast<std::size_t>(classifier_)]);
}

void ChemicalClassification::print(std::ostream& os) const {
  validate(classifier_);
  os << str();
}

void ChemicalClassification::write(Archive& archive) const {
  validate(classifier_);
  archive << static_cast<int>(classifier_);
}

void ChemicalClassification::read(Archive& archive) {
  int value = 0;
  archive >> value;
  const auto classifier = static_cast<Classifier>(value);
  validate(classifier);
  classifier_ = classifier;
}

void ChemicalClassification::validate(Classifier classifier) {
  require_enum_range(classifier, carbohydrate, high_polymer, invalid);
}

Archive& operator<<(Archive& archive, const std::vector<ChemicalClassification>& classifications) {
  write_fields(archive, classifications);
  return archive;
}

Archive& operator>>(Archive& archive, std::vector<ChemicalClassification>& classifications) {
  read_fields(archive, classifications);
  return archive;
}
