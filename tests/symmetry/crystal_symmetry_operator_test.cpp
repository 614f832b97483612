#include <gtest/gtest.h>
#include <symmetry/crystal_symmetry_operator.h>

#include <cmath>
#include <limits>

#include "support/bytes.h"

namespace {

std::string stored_operator(const std::array<std::int32_t, 9>& matrix, double x, double y, double z) {
  std::string result;
  for (const std::int32_t element : matrix) result += int32(element);
  return bytes(result, float64(x), float64(y), float64(z));
}

constexpr std::array<std::int32_t, 9> identity = {1, 0, 0, 0, 1, 0, 0, 0, 1};

CrystalSymmetryOperator read_operator(const std::string& stored) {
  CrystalSymmetryOperator result;
  read_from(stored, [&](Archive& archive) { result.read(archive); });
  return result;
}

TEST(CrystalSymmetryOperator, IsTheIdentityByDefault) {
  EXPECT_EQ(CrystalSymmetryOperator().xyz(), "x,y,z");
  EXPECT_EQ(CrystalSymmetryOperator(), CrystalSymmetryOperator("x,y,z"));
}

TEST(CrystalSymmetryOperator, GivesACanonicalTextBackUnchanged) {
  for (const char* text : {"x,y,z",
                           "-x,-y,-z",
                           "-x,1/2+y,-z",
                           "-x,1/2+y,1/2-z",
                           "x,1/2-y,1/2+z",  // triclinic, monoclinic
                           "1/4-x,y,1/4-z",
                           "1/4+x,1/4-y,3/4+z",  // diamond glides
                           "-y,x,1/4+z",
                           "y,-x,3/4+z",
                           "1/2-y,1/2+x,z",
                           "y,x,-z",  // tetragonal
                           "-y,x-y,1/3+z",
                           "-x+y,-x,2/3+z",
                           "1/3-x+y,2/3-x,2/3+z",
                           "x-y,x,5/6+z",  // trigonal, hexagonal
                           "z,x,y",
                           "-z,x,-y",
                           "3/4+z,1/4-y,3/4-x",
                           "1/8-x,7/8+z,3/8+y",  // cubic
                           "-1/2+x,y,z",
                           "1+x,-1+y,2+z",
                           "3/2-x,y,z",
                           "1/12+x,5/24+y,-11/12+z",  // out of the cell
                           "2x-y,x,3z",
                           "0,y,z",
                           "0.1234+x,y,-0.05-z",
                           "0.3333+x,y,z",
                           "1/2,1/3,1/4"})  // settings, positions
  {
    EXPECT_EQ(CrystalSymmetryOperator(text).xyz(), text);
  }
}

struct Spelling {
  const char* text;
  const char* canonical;
  const char* why;
};

TEST(CrystalSymmetryOperator, RefusesDigitsThatAddUpToAThousand) {
  std::string text = "x,y,z";
  for (int term = 0; term < 111; ++term) text += "+9";
  EXPECT_EQ(CrystalSymmetryOperator(text).xyz(), "x,y,999+z");
  EXPECT_THROW(CrystalSymmetryOperator(text + "+1"), std::invalid_argument);
}

TEST(CrystalSymmetryOperator, ReadsEverySpellingOfTheSameOperator) {
  for (const Spelling& row : {
           Spelling{"X,Y,Z", "x,y,z", "capitals are as good"},
           {" x + 1/2 ,\t-y , z ", "1/2+x,-y,z", "blanks and tabs do not count"},
           {"x+1/2,-y,z", "1/2+x,-y,z", "the translation may come last"},
           {"+x,+y,+z", "x,y,z", "a plus in front says nothing"},
           {"x,y,z+1", "x,y,1+z", "a number may be the last of the text"},
           {"y-x,y,z", "-x+y,y,z", "the axes are put in order"},
           {"0.5+x,.25+y,0.75+z", "1/2+x,1/4+y,3/4+z", "decimals that are fractions exactly"},
           {"2/4+x,4/6+y,3/24+z", "1/2+x,2/3+y,1/8+z", "fractions are reduced"},
           {"1/4+x+1/4,y,z", "1/2+x,y,z", "translations add up"},
           {"x,y,z+1/2-1/2", "x,y,z", "a translation may vanish"},
           {"0x,y,z", "0,y,z", "a factor of nought takes the axis away"},
       }) {
    EXPECT_EQ(CrystalSymmetryOperator(row.text).xyz(), row.canonical) << row.why;
  }
}

TEST(CrystalSymmetryOperator, TakesAThirdAsTheNearestDouble) {
  EXPECT_EQ(CrystalSymmetryOperator("1/3+x,y,z").apply({0.0, 0.0, 0.0}).x, 1.0 / 3.0);
  EXPECT_NE(CrystalSymmetryOperator("1/3+x,y,z"), CrystalSymmetryOperator("0.3333333+x,y,z"));
}

struct Refusal {
  const char* text;
  const char* message;
};

TEST(CrystalSymmetryOperator, RefusesAnythingElseWithTheTextTheOffsetAndTheReason) {
  for (const Refusal& row : {
           Refusal{"", "\"\" at offset 0: x, y, z or a number is missing"},
           {"x,y", "\"x,y\" at offset 3: a comma is missing"},
           {"x,y,", "\"x,y,\" at offset 4: x, y, z or a number is missing"},
           {"x,y,z,", "\"x,y,z,\" at offset 5: something follows the third sum"},
           {"x,,z", "\"x,,z\" at offset 2: x, y, z or a number is missing"},
           {"x y,y,z", "\"x y,y,z\" at offset 2: a comma is missing"},
           {"x--y,y,z", "\"x--y,y,z\" at offset 2: x, y, z or a number is missing"},
           {"w,y,z", "\"w,y,z\" at offset 0: x, y, z or a number is missing"},
           {"x+x,y,z", "\"x+x,y,z\" at offset 2: an axis stands twice in one sum"},
           {"1/0+x,y,z", "\"1/0+x,y,z\" at offset 3: the denominator is zero"},
           {"1/+x,y,z", "\"1/+x,y,z\" at offset 2: a number below 1000 is missing"},
           {"1/-2+x,y,z", "\"1/-2+x,y,z\" at offset 2: a number below 1000 is missing"},
           {"1/inf+x,y,z", "\"1/inf+x,y,z\" at offset 2: a number below 1000 is missing"},
           {"1/nan+x,y,z", "\"1/nan+x,y,z\" at offset 2: a number below 1000 is missing"},
           {".+x,y,z", "\".+x,y,z\" at offset 0: a number below 1000 is missing"},
           {"1000+x,y,z", "\"1000+x,y,z\" at offset 0: a number below 1000 is missing"},
           {"1/0.0001+x,y,z", "\"1/0.0001+x,y,z\" at offset 8: the number is not below 1000"},
           {"999-x+999,y,z", "\"999-x+999,y,z\" at offset 9: the translation is not below 1000"},
           {"1e2+x,y,z", "\"1e2+x,y,z\" at offset 1: a comma is missing"},
           {"1.2.3+x,y,z", "\"1.2.3+x,y,z\" at offset 3: a comma is missing"},
           {"1/2x,y,z",
            "\"1/2x,y,z\" at offset 3: the factor of an axis must be a whole number of at most two digits"},
           {".5x,y,z",
            "\".5x,y,z\" at offset 2: the factor of an axis must be a whole number of at most two digits"},
           {"999x,y,z",
            "\"999x,y,z\" at offset 3: the factor of an axis must be a whole number of at most two digits"},
           {"x,y,z;", "\"x,y,z;\" at offset 5: something follows the third sum"},
       }) {
    EXPECT_EQ(message_of<std::invalid_argument>([&] { CrystalSymmetryOperator op(row.text); }),
              "Invalid CrystalSymmetryOperator " + std::string(row.message));
  }
}

TEST(CrystalSymmetryOperator, RefusesANulByteWhereverItStands) {
  const std::string whole = "x,y,z";
  for (std::size_t place = 0; place <= whole.size(); ++place) {
    std::string text = whole;
    text.insert(place, 1, '\0');
    EXPECT_THROW(CrystalSymmetryOperator op(text), std::invalid_argument) << place;
  }
}

TEST(CrystalSymmetryOperator, QuotesOnlyTheStartOfALongText) {
  const std::string digits(1'000'000, '7');
  EXPECT_EQ(message_of<std::invalid_argument>([&] { CrystalSymmetryOperator op(digits); }),
            "Invalid CrystalSymmetryOperator \"" + std::string(60, '7') +
                "...\" at offset 0: a number below 1000 is missing");
  const std::string blanks(1'000'000, ' ');
  EXPECT_THROW(CrystalSymmetryOperator op(blanks), std::invalid_argument);
}

TEST(CrystalSymmetryOperator, AppliesTheMatrixThenTheTranslation) {
  EXPECT_EQ(CrystalSymmetryOperator("-x,1/2+y,1/2-z").apply({0.25, 0.5, 0.125}),
            (FractionalCoordinates{-0.25, 1.0, 0.375}));
  EXPECT_EQ(CrystalSymmetryOperator("-x+y,2x,x-z").apply({0.25, 0.5, 0.125}),
            (FractionalCoordinates{0.25, 0.5, 0.125}));
}

TEST(CrystalSymmetryOperator, TakesTheLargestFactorsWithoutOverflow) {
  const auto op = read_operator(
      stored_operator({INT32_MIN, INT32_MIN, INT32_MIN, 0, 1, 0, 0, 0, INT32_MAX}, 0.0, 0.0, 0.0));
  EXPECT_EQ(op.xyz(), "-2147483648x-2147483648y-2147483648z,y,2147483647z");
  EXPECT_EQ(op.apply({1.0, 1.0, 1.0}), (FractionalCoordinates{-6442450944.0, 1.0, 2147483647.0}));
}

TEST(CrystalSymmetryOperator, IsNineIntsRowByRowAndThreeDoubles) {
  const CrystalSymmetryOperator op("-x+y,1/2-x,1/3+z");
  const std::string stored = stored_operator({-1, 1, 0, -1, 0, 0, 0, 0, 1}, 0.0, 0.5, 1.0 / 3.0);
  EXPECT_EQ(written([&](Archive& archive) { op.write(archive); }), stored);
  EXPECT_EQ(read_operator(stored), op);
}

TEST(CrystalSymmetryOperator, ShowsAnyArchivedTranslation) {
  struct Row {
    double translation;
    const char* text;
  };
  for (const Row& row : {Row{HUGE_VAL, "inf+x,y,z"},
                         {-HUGE_VAL, "-inf+x,y,z"},
                         {std::nan(""), "nan+x,y,z"},
                         {-0.0, "x,y,z"},
                         {0.1 + 0.2, "0.30000000000000004+x,y,z"},
                         {1e22, "10000000000000000000000+x,y,z"}}) {
    EXPECT_EQ(read_operator(stored_operator(identity, row.translation, 0.0, 0.0)).xyz(), row.text);
  }
}

TEST(CrystalSymmetryOperator, WritesOutTheSmallestTranslationSoThatItReadsBack) {
  const auto op =
      read_operator(stored_operator(identity, std::numeric_limits<double>::denorm_min(), 0.0, 0.0));
  EXPECT_EQ(op.xyz(), "0." + std::string(323, '0') + "5+x,y,z");
  EXPECT_EQ(CrystalSymmetryOperator(op.xyz()), op);
}

TEST(CrystalSymmetryOperator, ThrowsWhereverTheStreamEnds) {
  const std::string stored = stored_operator(identity, 0.5, 0.0, 0.0);
  for (std::size_t length = 0; length < stored.size(); ++length) {
    EXPECT_THROW(read_operator(stored.substr(0, length)), ArchiveError) << length;
  }
}

// A tab makes a triplet one that is read with care.
TEST(CrystalSymmetryOperator, IsTheSameFromAPlainTripletAndFromOneThatIsReadWithCare) {
  const char* const sums[] = {"x",        "-y",    "+z",       "x-y",       "1/2-x",  "z+3/4",
                              "y - 1/12", "0+x",   "7/24+x-y", "x+1/2+1/4", "X",      "1-x",
                              "1/24",     "0.5+x", "2x",       "x+10",      "1 /2+x", "-x-1/2-y"};
  for (const std::string first : sums) {
    for (const std::string second : sums) {
      const std::string plain = first + "," + second + ",z";
      EXPECT_EQ(CrystalSymmetryOperator(plain), CrystalSymmetryOperator(first + "\t," + second + ",z"))
          << plain;
    }
  }
}

TEST(CrystalSymmetryOperator, IsRefusedFromAPlainTripletAsFromOneThatIsReadWithCare) {
  for (const std::string text :
       {"", ",", "x,y", "x,y,", "x,y,z,", "x,y,z,x", "x y,y,z", "x+,y,z", "+-x,y,z", "x1,y,z", "1/0+x,y,z",
        "x+x,y,z", "1/2x,y,z", "/2,y,z", "x,y,z+", "1//2,y,z", "x,,z", "1/,y,z"}) {
    const std::string reason = message_of<std::invalid_argument>([&] { CrystalSymmetryOperator{text}; });
    EXPECT_NE(reason, "nothing was thrown") << text;
    EXPECT_NE(reason.find("\"" + text + "\""), std::string::npos) << text;
  }
}

}  // namespace
