#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <utilities/archiving/field_list.h>
#include <utilities/fields.h>

#include <cstdint>
#include <stdexcept>

#include "support/bytes.h"

namespace {

struct Point {
  double x = 0.0;
  double y = 0.0;

  static constexpr auto fields() { return std::tuple{Field{"x", &Point::x}, Field{"y", &Point::y, "Y"}}; }
  static constexpr bool archived_by_fields = true;
};

// Its number is private, and not every number may be read.
class Numbered {
 public:
  explicit Numbered(int number) : number_(number) {}

  static constexpr auto fields() { return std::tuple{ReadOnlyField{"number", &Numbered::number_}}; }
  static constexpr bool archived_by_fields = true;
  void check() const {
    if (number_ < 0) throw std::invalid_argument("Invalid Numbered");
  }

 private:
  int number_;
};

enum class Colour : std::int32_t { red = 1, green = 2 };

struct Drawing {
  int size = 0;
  Point centre;
  Colour colour = Colour::red;
  Numbered number = Numbered(7);
  std::string title;

  static constexpr auto fields() {
    return std::tuple{Field{"size", &Drawing::size}, Field{"centre", &Drawing::centre},
                      Field{"colour", &Drawing::colour}, Field{"number", &Drawing::number},
                      Field{"title", &Drawing::title}};
  }
};

const Drawing drawing = {1, {0.5, 0.25}, Colour::green, Numbered(3), "t"};
const std::string drawing_bytes = bytes(int32(1), float64(0.5), float64(0.25), int32(2), int32(3), text("t"));

template <class Record>
concept CanBeChangedThroughItsList = requires(Record& record) {
  std::get<0>(Record::fields()).of(record) = {};
};
static_assert(CanBeChangedThroughItsList<Point>);
static_assert(!CanBeChangedThroughItsList<const Point>);
static_assert(!CanBeChangedThroughItsList<Numbered>);

TEST(Fields, AreWalkedByNameInTheOrderOfTheList) {
  std::vector<std::string> names;
  for_each_field(drawing, [&](const char* name, const auto&) { names.emplace_back(name); });
  EXPECT_THAT(names, testing::ElementsAre("size", "centre", "colour", "number", "title"));
}

TEST(Fields, AreThoseOfTheRecordItself) {
  Point point;
  for_each_field(point, [](const char* name, double& value) { value = name[0]; });
  EXPECT_EQ(point.x, 'x');
  EXPECT_EQ(point.y, 'y');
}

TEST(Fields, HaveTheirNameAsTheirLabelUnlessOneIsGiven) {
  const auto fields = Point::fields();
  EXPECT_STREQ(std::get<0>(fields).label, "x");
  EXPECT_STREQ(std::get<1>(fields).label, "Y");
}

TEST(Fields, AreShownAlsoWhereTheyArePrivate) {
  const Numbered four(4);
  for_each_field(four, [](const char*, const int& number) { EXPECT_EQ(number, 4); });
}

TEST(Fields, AreComparedInTheOrderOfTheList) {
  EXPECT_TRUE(equal_fields(Point{1, 2}, Point{1, 2}));
  EXPECT_FALSE(equal_fields(Point{1, 2}, Point{1, 3}));
}

TEST(ArchivedFields, AreTheFieldsOfTheRecordsInThemInTheirPlace) {
  EXPECT_EQ(written([](Archive& archive) { write_all_fields(archive, drawing); }), drawing_bytes);
  Drawing back;
  read_from(drawing_bytes, [&](Archive& archive) { read_all_fields(archive, back); });
  EXPECT_EQ(written([&](Archive& archive) { write_all_fields(archive, back); }), drawing_bytes);
}

TEST(ArchivedFields, AreCheckedBeforeTheNextOneIsRead) {
  Drawing back;
  const std::string stored = bytes(int32(1), float64(0), float64(0), int32(2), int32(-1), text("t"));
  EXPECT_THROW(read_from(stored, [&](Archive& archive) { read_all_fields(archive, back); }),
               std::invalid_argument);
  EXPECT_EQ(std::get<0>(Numbered::fields()).of(back.number), -1);
  EXPECT_EQ(back.title, "");
}

TEST(ArchivedFields, LeaveTheEnumerationsAsideWhereTheRecordChecksThem) {
  Drawing back;
  read_from(drawing_bytes, [&](Archive& archive) {
    const auto aside = read_all_fields_but_enumerations(archive, back);
    EXPECT_EQ(std::get<Colour>(aside), Colour::green);
  });
  EXPECT_EQ(back.colour, Colour::red);
  EXPECT_EQ(back.title, "t");
}

}  // namespace
