// One chemical class of a compound, of a fixed list of natural products and materials.
//
//   ChemicalClassification steroid(ChemicalClassification::steroid);
//   steroid.str();                                                   // "Steroid"
//
// Any 32-bit value can be held, and the default one, 0, is no class: write(), read() and print() throw
// std::invalid_argument, "Invalid ChemicalClassification", for a value outside 1 to 11.
#pragma once

#include <database_entry/export.h>
#include <utilities/archive.h>
#include <utilities/fields.h>

#include <cstdint>
#include <iosfwd>
#include <string>
#include <tuple>
#include <vector>

class DATABASE_ENTRY_EXPORT ChemicalClassification {
 public:
  enum Classifier : std::int32_t {
    none = 0,  // has a text, but is refused by validate()
    carbohydrate = 1,
    nucleoside_or_nucleotide = 2,
    amino_acid_peptide_and_complexes = 3,
    porphyrin_corrin_and_complexes = 4,
    antibiotic = 5,
    steroid = 6,
    terpene = 7,
    alkaloid = 8,
    miscellaneous_natural_products = 9,
    supramolecular_entity = 10,
    high_polymer = 11
  };

  ChemicalClassification() = default;
  // Not checked: what is stored, read or printed is.
  explicit ChemicalClassification(Classifier classifier) : classifier_(classifier) {}

  [[nodiscard]] Classifier classifier() const { return classifier_; }

  // The text of the class, "Error, None" for 0. Throws std::invalid_argument for a value outside 0 to 11.
  [[nodiscard]] std::string str() const;

  // Writes the text alone. Throws before anything is written.
  void print(std::ostream& os) const;

  // Bytes: an int. A value that is refused leaves the old one.
  void write(Archive& archive) const;
  void read(Archive& archive);

  // Accepts 1 to 11; throws std::invalid_argument, "Invalid ChemicalClassification", otherwise.
  static void validate(Classifier classifier);

  bool operator==(const ChemicalClassification&) const = default;

  // Archived by its own operations, which refuse what is no class before it is written or kept.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"classifier", &ChemicalClassification::classifier_}};
  }

 private:
  Classifier classifier_ = none;
};

// A list of classes on an archive: the count, then each. Reading keeps and overwrites existing elements, and
// removes the surplus. A class that is refused stops either; what was written or read before it stays, and a
// list that was to grow has grown as one of texts does (foundations/archive_encodings.h).
DATABASE_ENTRY_EXPORT Archive& operator<<(Archive& archive,
                                          const std::vector<ChemicalClassification>& classifications);
DATABASE_ENTRY_EXPORT Archive& operator>>(Archive& archive,
                                          std::vector<ChemicalClassification>& classifications);
