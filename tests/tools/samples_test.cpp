// The stored archives in data/samples are what this code writes: the test rebuilds them byte by byte.
#include <gtest/gtest.h>

#include "tools/files/entry_file.h"
#include "tools/files/memory_archive.h"
#include "tools/temporary_folder.h"

namespace {

StoredEntry cross_referencing_entry() {
  const THandle<Cell> cell(
      new Cell(5.64, 5.64, 5.64, 90, 90, 90,
               THandle<std::vector<CrystalSymmetryOperator>>(
                   new std::vector<CrystalSymmetryOperator>{CrystalSymmetryOperator()})));
  const THandle<ChemicalInfo> chemistry(new ChemicalInfo);
  chemistry->formula = "C6 H12 O6";
  chemistry->name = "an invented sugar";
  chemistry->classifiers = {ChemicalClassification(ChemicalClassification::carbohydrate)};
  const THandle<CrossReferenceInfo> references(new CrossReferenceInfo);
  references->insert({DatabaseCrossReference::racemate,
                      "Racemate of",
                      {DatabaseEntryIdentifier("ABCDEF"), DatabaseEntryIdentifier("GHIJKL02")}});
  references->insert(
      {DatabaseCrossReference::coordinates_see, "Coordinates in", DatabaseEntryIdentifier("X1234567")});
  const THandle<DepositionInfo> depositions(new DepositionInfo);
  depositions->set_text(DepositionInfo::vorn, "VORN 123456 and VORN 654321");
  depositions->set_text(DepositionInfo::iucr_coeditor_code, "IUCr AB1234");
  return {DatabaseEntryIdentifier("ABCDEF01"),
          THandle<CrystalMaker>(new CrystalMaker(cell)),
          cell,
          THandle<Publication>(new Publication({"A.Author", "B.Author"}, Journal(4), "101", 1979, "2345")),
          THandle<ExperimentalInfo>(new ExperimentalInfo),
          THandle<EditorsInfo>(new EditorsInfo),
          chemistry,
          THandle<CrystalInfo>(new CrystalInfo),
          {},
          THandle<ConnectivityInfo>(new ConnectivityInfo),
          {},
          {},
          {},
          references,
          depositions,
          {},
          {}};
}

TEST(Samples, HoldTheCrossReferencingEntry) {
  const std::string written = archived([](Archive& archive) { cross_referencing_entry().write(archive); });
  const std::string stored = contents_of_file(SAMPLES_FOLDER "/cross_references.dbe");
  EXPECT_TRUE(stored == written) << stored.size() << " bytes are stored, " << written.size() << " written";
}

}  // namespace
