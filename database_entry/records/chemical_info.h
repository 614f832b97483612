// The compound in words: formula, names, activity, source, sequence and chemical classes.
//
//   ChemicalInfo chemical;
//   chemical.formula = "C10 H8";
//   chemical.synonyms = {"naphthalin", "tar camphor"};
//
// Free text throughout, empty where not known. The order of both lists counts.
// Fails: write(), read() and print() throw std::invalid_argument, "Invalid ChemicalClassification", at a
// class that is none; what was written or read before it stays. read() throws ArchiveError where the stream
// ends.
// Threads: as every record, one at a time.
#pragma once

#include <database_entry/export.h>
#include <database_entry/foundations/archive_encodings.h>
#include <database_entry/foundations/component_text.h>
#include <database_entry/records/chemical_classification.h>
#include <utilities/fields.h>

#include <string>
#include <tuple>
#include <vector>

class DATABASE_ENTRY_EXPORT ChemicalInfo {
 public:
  ChemicalInfo() = default;
  // Takes every field as it is given.
  ChemicalInfo(const std::string& formula, const std::string& name, const std::string& bioactivity,
               const std::string& conformer, const std::string& source, const std::string& peptide_sequence,
               const std::string& isomer, const std::vector<ChemicalClassification>& classifiers,
               const std::vector<std::string>& synonyms);

  void write(Archive& archive) const;
  void read(Archive& archive);
  // One line of labels and values, with its line end.
  void print(std::ostream& os) const;

  bool operator==(const ChemicalInfo& other) const;

  std::string formula;
  std::string name;
  std::string bioactivity;
  std::string conformer;
  std::string source;
  std::string peptide_sequence;
  std::string isomer;
  std::vector<ChemicalClassification> classifiers;
  std::vector<std::string> synonyms;

  // In archive order, which is the order of comparison and of the summary too.
  static constexpr auto fields() {
    return std::tuple{Field{"formula", &ChemicalInfo::formula},
                      Field{"name", &ChemicalInfo::name},
                      Field{"bioactivity", &ChemicalInfo::bioactivity},
                      Field{"conformer", &ChemicalInfo::conformer},
                      Field{"source", &ChemicalInfo::source},
                      Field{"peptide_sequence", &ChemicalInfo::peptide_sequence},
                      Field{"isomer", &ChemicalInfo::isomer},
                      Field{"classifiers", &ChemicalInfo::classifiers},
                      Field{"synonyms", &ChemicalInfo::synonyms}};
  }
};

template <>
inline constexpr bool is_archived_component<ChemicalInfo> = true;
template <>
inline constexpr bool is_printed_component<ChemicalInfo> = true;
