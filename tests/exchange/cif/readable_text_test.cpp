#include "exchange/cif/readable_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

struct TextCase {
  const char* cif;
  const char* text;
  const char* reason;
};

class ReadableText : public testing::TestWithParam<TextCase> {};

TEST_P(ReadableText, IsOneLineOfLetters) {
  EXPECT_EQ(readable_text(GetParam().cif), GetParam().text) << GetParam().reason;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ReadableText,
    testing::Values(
        TextCase{"", "", "nothing stays nothing"}, TextCase{" \t ", "", "blanks alone are nothing"},
        TextCase{"  Lead  Oxide ", "Lead Oxide", "blanks at the ends and in runs"},
        TextCase{"Journal of\nInvented\r\nStructures", "Journal of Invented Structures", "lines"},
        TextCase{"a\001b\177c", "a b c", "control characters have no place in a summary"},
        TextCase{"M\\\"uller", "Müller", "umlaut"}, TextCase{"Andr\\'e", "André", "acute"},
        TextCase{"Fran\\,cois", "François", "cedilla"},
        TextCase{"Dvo\\<r\\'ak", "Dvořák", "two codes in a word"},
        TextCase{"\\%angstr\\\"om", "ångström", "a ring, and an umlaut after it"},
        TextCase{"Stra\\&sburger", "Straßburger", "sharp s"},
        TextCase{"\\/Orsted, \\/Lukasz", "Ørsted, Łukasz", "strokes"}, TextCase{"Mo K\\a", "Mo Kα", "Greek"},
        TextCase{"\\W", "Ω", "Greek capital"}, TextCase{"a\\", "a\\", "a code without a letter"},
        TextCase{"\\'q", "\\'q", "a letter that has no such accent"},
        TextCase{"Al Cl~3~", "Al Cl₃", "lowered text"}, TextCase{"Fe^2+^", "Fe²⁺", "raised text"},
        TextCase{"C~ax~H^*^", "C~ax~H^*^", "letters that cannot be lowered or raised"},
        TextCase{"a ~5 mm and ~6 mm", "a ~5 mm and ~6 mm", "a tilde before a number"},
        TextCase{"1--2", "1–2", "a dash"}, TextCase{"C---O", "C—O", "a bond"},
        TextCase{"----", "----", "a rule of hyphens"}, TextCase{"5 +- 2", "5 ± 2", "plus or minus"},
        TextCase{"5\\%C", "5°C", "degrees"},
        TextCase{"2 \\\\times 3", "2 × 3", "a word after two backslashes"},
        TextCase{"\\\\unknown", "\\\\unknown", "a word that is not in the tables"},
        TextCase{"Andr&eacute; &amp; S&oslash;n", "André & Søn", "entities of HTML"},
        TextCase{"&#252;&#xFC;&#x3b1;", "üüα", "entities by number"},
        TextCase{"&alpha;&rarr;&nbsp;x", "α→ x", "Greek, arrows, blanks"},
        TextCase{"&nosuch; &#0; &#xD800; &#x110000; &", "&nosuch; &#0; &#xD800; &#x110000; &", "no entities"},
        TextCase{"<i>catena</i>-<B>poly</B>", "catena-poly", "how letters look"},
        TextCase{"CO<sub>2</sub>, Fe<sup>2+</sup>", "CO₂, Fe²⁺", "lowered and raised"},
        TextCase{"C<sub>ax</sub>", "C~ax~", "lowered letters"},
        TextCase{"one<br/>two", "one two", "a line end"}, TextCase{"a < b > c", "a < b > c", "no tags"},
        TextCase{"N'chwaning", "N'chwaning", "an apostrophe is no code"},
        TextCase{"M\xfcller", "Müller", "ISO 8859-1"}, TextCase{"Müller", "Müller", "UTF-8"}));

class MarkedUpText : public testing::TestWithParam<const char*> {};

TEST_P(MarkedUpText, IsAsciiAndReadsBack) {
  const std::string code = cif_markup(GetParam());
  EXPECT_EQ(readable_text(code), GetParam()) << code;
  EXPECT_TRUE(std::all_of(code.begin(), code.end(), [](char c) { return c >= ' ' && c <= '~'; })) << code;
}

INSTANTIATE_TEST_SUITE_P(Cases, MarkedUpText,
                         testing::Values("", "plain", "Müller, Dvořák, Straßburger, Łukasz", "Mo Kα",
                                         "Fe²⁺ and H₂O₁₂", "1–2 ± 3 → ∞", "水晶 😀", "a \\'e that is none",
                                         "&amp; <i> ^2+^ ~3~ -- +- --- -+", "5°", "°a", "x°C", "C≡N",
                                         "\\\\times", "²₂", "&#x41;"));

TEST(MarkedUpText, HasTheCodesOfCifWhereThereAreSome) {
  EXPECT_EQ(cif_markup("Müller – Kα, H₂O"), "M\\\"uller -- K\\a, H~2~O");
  EXPECT_EQ(cif_markup("水"), "&#x6c34;");
}

}  // namespace
