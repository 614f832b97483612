#include <database_entry/records/chemical_info.h>
#include <gtest/gtest.h>

#include "support/sample_records.h"

namespace {

ChemicalInfo cholesterol() {
  return Sample<ChemicalInfo>::filled();
}

TEST(ChemicalInfo, TakesTheConstructorsArgumentsInFieldOrder) {
  const ChemicalInfo info = cholesterol();
  EXPECT_EQ(info.formula, "C27 H46 O");
  EXPECT_EQ(info.name, "cholesterol");
  EXPECT_EQ(info.bioactivity, "lipid");
  EXPECT_EQ(info.conformer, "chair");
  EXPECT_EQ(info.source, "gallstones");
  EXPECT_EQ(info.peptide_sequence, "Gly-Ala");
  EXPECT_EQ(info.isomer, "3-beta");
  EXPECT_EQ(info.classifiers.size(), 2U);
  EXPECT_EQ(info.synonyms.size(), 3U);
}

TEST(ChemicalInfo, ByDefaultIsSevenEmptyTextsAndTwoEmptyLists) {
  EXPECT_EQ(bytes_of(ChemicalInfo()), std::string(9 * 4, '\0'));
}

TEST(ChemicalInfo, ByDefaultReadsBackEqual) {
  ChemicalInfo info = cholesterol();
  read_from(bytes_of(ChemicalInfo()), [&](Archive& archive) { info.read(archive); });
  EXPECT_TRUE(info == ChemicalInfo());
}

TEST(ChemicalInfo, ByDefaultPrintsItsLabelsBackToBack) {
  EXPECT_EQ(printed(ChemicalInfo()),
            "formula: , name: , bioactivity: , conformer: , source: , peptide_sequence: , isomer: , "
            "classifiers: , synonyms: \n");
}

TEST(ChemicalInfo, PrintsATabAfterEachElementOfItsLists) {
  EXPECT_EQ(printed(cholesterol()),
            "formula: C27 H46 O, name: cholesterol, bioactivity: lipid, conformer: chair, "
            "source: gallstones, peptide_sequence: Gly-Ala, isomer: 3-beta, "
            "classifiers: 0: Steroid\t1: Carbohydrate\t, "
            "synonyms: 0: cholesterin\t1: \t2: cholest-5-en-3-ol\t\n");
}

TEST(ChemicalInfo, StopsPrintingAtAClassThatIsNone) {
  ChemicalInfo info;
  info.classifiers = {ChemicalClassification(ChemicalClassification::steroid), ChemicalClassification()};
  std::ostringstream os;
  EXPECT_EQ(message_of<std::invalid_argument>([&] { info.print(os); }), "Invalid ChemicalClassification");
  EXPECT_EQ(os.str(),
            "formula: , name: , bioactivity: , conformer: , source: , peptide_sequence: , isomer: , "
            "classifiers: 0: Steroid\t1: ");
}

TEST(ChemicalInfo, StopsWritingAtAClassThatIsNone) {
  ChemicalInfo info;
  info.classifiers = {ChemicalClassification(ChemicalClassification::steroid), ChemicalClassification()};
  info.synonyms = {"never written"};
  const std::string left = written([&](Archive& archive) {
    EXPECT_EQ(message_of<std::invalid_argument>([&] { info.write(archive); }),
              "Invalid ChemicalClassification");
  });
  EXPECT_EQ(left, bytes(std::string(7 * 4, '\0'), int32(2), int32(6)));
}

TEST(ChemicalInfo, WithAClassThatIsNoneIsStillCompared) {
  ChemicalInfo info;
  info.classifiers = {ChemicalClassification()};
  EXPECT_TRUE(info == ChemicalInfo(info));
  EXPECT_FALSE(info == ChemicalInfo());
}

TEST(ChemicalInfo, KeepsWhatWasReadBeforeAClassThatIsNone) {
  ChemicalInfo info;
  info.synonyms = {"old"};
  const std::string stored =
      bytes(text("C"), text("new"), std::string(5 * 4, '\0'), int32(3), int32(7), int32(12));
  long position = 0;
  read_from(stored + "after", [&](Archive& archive) {
    EXPECT_THROW(info.read(archive), std::invalid_argument);
    position = std::ftell(archive.stream());
  });
  EXPECT_EQ(position, static_cast<long>(stored.size()));
  EXPECT_EQ(info.name, "new");
  EXPECT_EQ(info.classifiers, (std::vector<ChemicalClassification>{
                                  ChemicalClassification(ChemicalClassification::terpene), {}, {}}));
  EXPECT_EQ(info.synonyms, std::vector<std::string>{"old"});
}

TEST(ChemicalInfo, KeepsItsListsWhenTheStreamEndsInTheTexts) {
  ChemicalInfo info = cholesterol();
  failed_read<ArchiveError>(info, text("new formula"));
  EXPECT_EQ(info.formula, "new formula");
  EXPECT_EQ(info.name, "cholesterol");
  EXPECT_EQ(info.classifiers.size(), 2U);
}

TEST(ChemicalInfo, DiffersInEachField) {
  using Change = void (*)(ChemicalInfo&);
  const std::vector<std::pair<const char*, Change>> changes = {
      {"formula", [](ChemicalInfo& info) { info.formula += ' '; }},
      {"name", [](ChemicalInfo& info) { info.name[0] = 'C'; }},
      {"bioactivity", [](ChemicalInfo& info) { info.bioactivity.clear(); }},
      {"conformer", [](ChemicalInfo& info) { info.conformer += '\0'; }},
      {"source", [](ChemicalInfo& info) { info.source += 's'; }},
      {"peptide_sequence", [](ChemicalInfo& info) { info.peptide_sequence = "Ala-Gly"; }},
      {"isomer", [](ChemicalInfo& info) { info.isomer = "3-alpha"; }},
      {"order of classifiers",
       [](ChemicalInfo& info) { std::swap(info.classifiers[0], info.classifiers[1]); }},
      {"number of classifiers", [](ChemicalInfo& info) { info.classifiers.pop_back(); }},
      {"order of synonyms", [](ChemicalInfo& info) { std::swap(info.synonyms[0], info.synonyms[1]); }},
      {"number of synonyms", [](ChemicalInfo& info) { info.synonyms.emplace_back(); }}};
  EXPECT_TRUE(cholesterol() == cholesterol());
  for (const auto& [reason, change] : changes) {
    ChemicalInfo other = cholesterol();
    change(other);
    EXPECT_FALSE(cholesterol() == other) << reason;
  }
}

}  // namespace
