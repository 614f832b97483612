#include <database_entry/foundations/sequence_text.h>
#include <database_entry/records/chemical_classification.h>
#include <gtest/gtest.h>

#include "support/sample_records.h"

namespace {

ChemicalClassification classification(int value) {
  return ChemicalClassification(static_cast<ChemicalClassification::Classifier>(value));
}

constexpr const char* invalid = "Invalid ChemicalClassification";

TEST(ChemicalClassification, HasTheTextOfItsValue) {
  const char* const texts[] = {"Error, None",
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
  for (int value = 0; value < 12; ++value) EXPECT_EQ(classification(value).str(), texts[value]);
}

TEST(ChemicalClassification, HasNoTextForOtherValues) {
  for (const int value : {-1, 12, INT_MIN, INT_MAX}) {
    EXPECT_EQ(message_of<std::invalid_argument>([&] { return classification(value).str(); }), invalid);
  }
}

TEST(ChemicalClassification, IsNoClassByDefault) {
  EXPECT_EQ(ChemicalClassification().classifier(), 0);
  EXPECT_EQ(ChemicalClassification().str(), "Error, None");
}

TEST(ChemicalClassification, AcceptsOneToEleven) {
  for (int value = 1; value <= 11; ++value) {
    EXPECT_NO_THROW(ChemicalClassification::validate(classification(value).classifier())) << value;
  }
}

TEST(ChemicalClassification, RefusesEverythingElse) {
  for (const int value : {0, -1, 12, INT_MIN, INT_MIN + 1, INT_MAX}) {
    EXPECT_EQ(message_of<std::invalid_argument>(
                  [&] { ChemicalClassification::validate(classification(value).classifier()); }),
              invalid);
  }
}

TEST(ChemicalClassification, PrintsItsTextAlone) {
  EXPECT_EQ(printed(classification(4)), "Porphyrin, Corrin & Complexes");
}

TEST(ChemicalClassification, ThatIsNoneIsRefusedBeforeAnythingIsPrinted) {
  std::ostringstream os;
  EXPECT_EQ(message_of<std::invalid_argument>([&] { ChemicalClassification().print(os); }), invalid);
  EXPECT_EQ(os.str(), "");
}

TEST(ChemicalClassification, ThatIsNoneIsRefusedBeforeAnythingIsWritten) {
  const std::string left = written([](Archive& archive) {
    EXPECT_EQ(message_of<std::invalid_argument>([&] { ChemicalClassification().write(archive); }), invalid);
  });
  EXPECT_EQ(left, "");
}

TEST(ChemicalClassification, KeepsItsValueWhenAReadOneIsRefused) {
  for (const int value : {0, -1, 12, INT_MIN, INT_MAX}) {
    ChemicalClassification steroid(ChemicalClassification::steroid);
    EXPECT_EQ(failed_read<std::invalid_argument>(steroid, int32(value)), invalid);
    EXPECT_EQ(steroid.classifier(), ChemicalClassification::steroid);
  }
}

using Classifications = std::vector<ChemicalClassification>;

TEST(ChemicalClassifications, AreArchivedAsTheirCountAndThenEach) {
  const Classifications two{classification(6), classification(11)};
  const std::string stored = written([&](Archive& archive) { archive << two; });
  EXPECT_EQ(stored, bytes(int32(2), int32(6), int32(11)));
  Classifications back(3, classification(1));
  read_from(stored, [&](Archive& archive) { archive >> back; });
  EXPECT_EQ(back, two);
}

TEST(ChemicalClassifications, StopAtTheOneThatIsNone) {
  const std::string left = written([](Archive& archive) {
    EXPECT_THROW(archive << Classifications({classification(6), classification(0)}), std::invalid_argument);
  });
  EXPECT_EQ(left, bytes(int32(2), int32(6)));
  Classifications back;
  const std::string stored = bytes(int32(3), int32(6), int32(12), int32(7));
  EXPECT_THROW(read_from(stored, [&](Archive& archive) { archive >> back; }), std::invalid_argument);
  EXPECT_EQ(back, (Classifications{classification(6), classification(0), classification(0)}));
}

TEST(ChemicalClassifications, ArePrintedByIndex) {
  std::ostringstream os;
  print_sequence(os, Classifications{classification(6), classification(11)});
  EXPECT_EQ(os.str(), "0: Steroid\t1: High Polymer\t");
}

TEST(ChemicalClassification, IsEqualByValueAlsoWhereItIsInvalid) {
  EXPECT_TRUE(classification(0) == ChemicalClassification());
  EXPECT_TRUE(classification(99) == classification(99));
  EXPECT_FALSE(classification(6) == classification(7));
}

}  // namespace
