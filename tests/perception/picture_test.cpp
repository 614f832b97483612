#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <perception/bonds.h>
#include <perception/components.h>
#include <perception/perception_error.h>
#include <perception/picture.h>

#include "crystals.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using testing::ThrowsMessage;

CrystalStructureImmediateDatabaseEntry entry_of(const CrystalMaker& maker,
                                                const char* identifier = "ABCDEF") {
  return {DatabaseEntryIdentifier(identifier), THandle<CrystalMaker>(new CrystalMaker(maker))};
}

CrystalStructureImmediateDatabaseEntry salt() {
  return entry_of(
      crystal({5.64, 5.64, 5.64, 90, 90, 90}, face_centred, {{"Na", {0, 0, 0}}, {"Cl", {0.5, 0, 0}}}));
}

CrystalStructureImmediateDatabaseEntry formic_acid() {
  return entry_of(in_a_box({{"C", {0, 0, 0}},
                            {"O", {0.65, 1.01, 0}},
                            {"O", {0.8, -1.07, 0}},
                            {"H", {-1.1, 0, 0}},
                            {"H", {1.75, -0.95, 0}}}));
}

TEST(DrawPicture, DrawsAllThatIsInACellAndOnItsFaces) {
  const Picture picture = draw_picture(salt(), {.kind = PictureKind::cell});
  EXPECT_EQ(picture.atoms, 27u);
  EXPECT_EQ(picture.bonds, 54u);
}

TEST(DrawPicture, DrawsAMoleculeAsTheConnectivityHasIt) {
  const Picture picture = draw_picture(formic_acid(), {.kind = PictureKind::molecule});
  const CrystalStructureImmediateDatabaseEntry perceived = perceive_components(formic_acid()).entry;
  EXPECT_EQ(picture.atoms, perceived.connectivity_info()->connectivity()->atoms.size());
  EXPECT_EQ(picture.bonds, perceived.connectivity_info()->connectivity()->bonds.size());
}

TEST(DrawPicture, DrawsADiagramThatTheEntryHasNot) {
  EXPECT_TRUE(formic_acid().chemical_diagram().is_null());
  const Picture picture = draw_picture(formic_acid());
  EXPECT_EQ(picture.atoms, 3u);
  EXPECT_EQ(picture.bonds, 2u);
}

TEST(DrawPicture, DrawsADiagramThatTheEntryHas) {
  const CrystalStructureImmediateDatabaseEntry entry = perceive_components(formic_acid()).entry;
  entry.chemical_diagram()->atoms.emplace_back(new DiagramAtom{"Xe", "", 2, 3.0, 3.0});
  EXPECT_EQ(draw_picture(entry).atoms, 4u);
}

struct Format {
  PictureFormat format;
  const char* name;
  const char* begins;
};

class EachFormat : public testing::TestWithParam<Format> {};

TEST_P(EachFormat, HasItsBeginningAndTheSameBytesEachTime) {
  const PictureOptions options{.kind = PictureKind::cell, .format = GetParam().format, .labels = true};
  const std::string bytes = draw_picture(salt(), options).bytes;
  EXPECT_THAT(bytes, StartsWith(GetParam().begins));
  (void)draw_picture(formic_acid(), options);
  EXPECT_EQ(draw_picture(salt(), options).bytes, bytes);
  EXPECT_EQ(picture_format_of(GetParam().name), GetParam().format);
}

INSTANTIATE_TEST_SUITE_P(DrawPicture, EachFormat,
                         testing::Values(Format{PictureFormat::svg, "a.b.svg", "<?xml"},
                                         Format{PictureFormat::png, "A.PNG", "\x89PNG\r\n"},
                                         Format{PictureFormat::pdf, "a.pdf", "%PDF-"}));

TEST(DrawPicture, HoldsNoFont) {
  const std::string svg = draw_picture(formic_acid()).bytes;
  EXPECT_THAT(svg, Not(HasSubstr("glyph")));
  EXPECT_THAT(svg, Not(HasSubstr("font")));
}

TEST(DrawPicture, LooksAlongAnAxis) {
  // Down a fourfold axis nothing of the cell is seen but a square: other bytes than those of the view that
  // shows depth.
  EXPECT_NE(draw_picture(salt(), {.kind = PictureKind::cell, .view = {0, 0, 1}}).bytes,
            draw_picture(salt(), {.kind = PictureKind::cell}).bytes);
}

TEST(DrawPicture, SaysWhyThereIsNothingToDraw) {
  EXPECT_THAT([] { (void)draw_picture(entry_of(in_a_box({})), {.kind = PictureKind::cell}); },
              ThrowsMessage<PerceptionError>(HasSubstr("There are no atoms to draw")));
  EXPECT_THAT([] { (void)draw_picture(salt()); },
              ThrowsMessage<PerceptionError>(HasSubstr("chains, layers or frameworks")));
}

TEST(DrawPicture, RefusesASizeThatIsNone) {
  for (const int width : {0, 15, 20001, -1})
    EXPECT_THROW((void)draw_picture(salt(), {.kind = PictureKind::cell, .width = width}), PerceptionError)
        << width;
}

TEST(DrawPicture, LeavesOutSticksOfMetalAtomsAroundTheSameNonMetal) {
  // Fluorite: calcium atoms are 3.86 Å apart, less than their radii and the tolerance.
  const CrystalMaker fluorite =
      crystal({5.463, 5.463, 5.463, 90, 90, 90}, face_centred,
              {{"Ca", {0, 0, 0}}, {"F", {0.25, 0.25, 0.25}}, {"F", {0.75, 0.75, 0.75}}});
  EXPECT_EQ(perceive_bonds(fluorite).bonds.size(), 32u + 24u);
  EXPECT_EQ(draw_picture(entry_of(fluorite), {.kind = PictureKind::cell}).bonds, 32u);
  const CrystalMaker copper = crystal({3.61, 3.61, 3.61, 90, 90, 90}, face_centred, {{"Cu", {0, 0, 0}}});
  EXPECT_EQ(draw_picture(entry_of(copper), {.kind = PictureKind::cell}).bonds, 36u);
}

TEST(DrawPicture, DrawsTheCellWhereThereIsNoDiagram) {
  EXPECT_EQ(draw_picture(salt(), {.kind = PictureKind::diagram_or_cell}).atoms, 27u);
  EXPECT_EQ(draw_picture(formic_acid(), {.kind = PictureKind::diagram_or_cell}).atoms, 3u);
}

TEST(DrawPicture, PutsIndependentMoleculesNextToOneAnother) {
  // Two atoms 2 Å apart across a face of the cell are as large as in one cell.
  const auto size_with = [](double x) {
    return draw_picture(entry_of(crystal({20, 20, 20, 90, 90, 90}, {"x,y,z"},
                                         {{"Ar", {0.02, 0.5, 0.5}}, {"Kr", {x, 0.5, 0.5}}})),
                        {.kind = PictureKind::molecule})
        .bytes;
  };
  EXPECT_EQ(size_with(0.92), size_with(-0.08));
}

TEST(DrawSheet, DrawsManyEntriesAndSaysOfOthersWhyNot) {
  std::vector<THandle<CrystalStructureDatabaseEntry>> entries;
  for (const auto& entry : {salt(), formic_acid(), entry_of(in_a_box({}))})
    entries.emplace_back(new CrystalStructureImmediateDatabaseEntry(entry));
  const PictureOptions options{.kind = PictureKind::molecule, .width = 200, .height = 200};
  EXPECT_EQ(draw_sheet(entries, options).atoms, 8u + 5u);
  EXPECT_THAT(draw_sheet(entries, options, 3).bytes, HasSubstr("width=\"600pt\" height=\"200pt\""));
  EXPECT_THAT(draw_sheet(entries, options).bytes, HasSubstr("width=\"400pt\" height=\"400pt\""));
  EXPECT_THROW((void)draw_sheet({}, options), PerceptionError);
}

TEST(PictureFormatOf, RefusesOtherNames) {
  for (const char* const name : {"a.gif", "svg", "", "a.svg.gz"})
    EXPECT_THROW((void)picture_format_of(name), PerceptionError) << name;
}

TEST(PictureViewOf, ReadsAxesAndVectors) {
  EXPECT_EQ(picture_view_of("b"), (std::array<double, 3>{0, 1, 0}));
  EXPECT_EQ(picture_view_of("1,-2,0.5"), (std::array<double, 3>{1, -2, 0.5}));
  for (const char* const text : {"", "d", "1,2", "1,2,3,4", "0,0,0", "1,,2", "1,2,nan", "1,2,3 "})
    EXPECT_THROW((void)picture_view_of(text), PerceptionError) << text;
}

}  // namespace
