#include <database_entry/foundations/enum_text_mapping.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "support/bytes.h"

namespace {

enum Probe : std::int32_t { unknown, x_ray, neutron, electron, gamma_ray };
using Mapping = EnumTextMapping<Probe>;

constexpr Mapping::Initialiser rows[] = {{unknown, "unknown"},
                                         {x_ray, "x-ray"},
                                         {neutron, "neutron"},
                                         {electron, "electron"},
                                         {gamma_ray, "gamma"}};

constexpr const char* not_unique =
    "Internal Error: in EnumTextMapping::EnumTextMapping, mapping is not unique";

static_assert(std::is_copy_constructible_v<Mapping>);
static_assert(!std::is_copy_assignable_v<Mapping>);
static_assert(!std::is_move_assignable_v<Mapping>);
static_assert(!std::is_move_constructible_v<Mapping>);

std::vector<Probe> members(const Mapping& mapping) {
  std::vector<Probe> values;
  mapping.all_members(values);
  return values;
}

TEST(EnumTextMapping, ListsItsValuesInTheOrderOfTheTexts) {
  EXPECT_EQ(members(Mapping(rows, 5)), (std::vector<Probe>{electron, gamma_ray, neutron, unknown, x_ray}));
}

TEST(EnumTextMapping, AppendsItsValuesAfterWhatIsThere) {
  std::vector<Probe> values{x_ray, x_ray};
  Mapping(rows, 3).all_members(values);
  EXPECT_EQ(values, (std::vector<Probe>{x_ray, x_ray, neutron, unknown, x_ray}));
}

TEST(EnumTextMapping, TakesTheFirstRowsOnly) {
  EXPECT_EQ(members(Mapping(rows, 2)), (std::vector<Probe>{unknown, x_ray}));
}

TEST(EnumTextMapping, RefusesATableWithoutRowsUnread) {
  const char* const expected = "Internal Error: in EnumTextMapping::EnumTextMapping, size cannot be zero";
  EXPECT_EQ(message_of<std::invalid_argument>([] { Mapping(rows, 0); }), expected);
  EXPECT_EQ(message_of<std::invalid_argument>([] { Mapping(nullptr, 0); }), expected);
}

TEST(EnumTextMapping, RefusesARepeatedText) {
  constexpr Mapping::Initialiser repeated[] = {{unknown, "a"}, {x_ray, "b"}, {neutron, "a"}};
  EXPECT_EQ(message_of<std::invalid_argument>([&] { Mapping(repeated, 3); }), not_unique);
}

TEST(EnumTextMapping, RefusesARepeatedValue) {
  constexpr Mapping::Initialiser repeated[] = {{x_ray, "a"}, {unknown, "b"}, {x_ray, "c"}};
  EXPECT_EQ(message_of<std::invalid_argument>([&] { Mapping(repeated, 3); }), not_unique);
}

TEST(EnumTextMapping, TellsTextsApartByCaseAndSortsUpperCaseFirst) {
  constexpr Mapping::Initialiser cases[] = {{unknown, "a"}, {x_ray, "A"}, {neutron, "Z"}, {electron, "aa"}};
  EXPECT_EQ(members(Mapping(cases, 4)), (std::vector<Probe>{x_ray, neutron, unknown, electron}));
}

TEST(EnumTextMapping, TakesAnyValuesAndAnEmptyText) {
  constexpr Mapping::Initialiser odd[] = {{static_cast<Probe>(-1), "b"}, {static_cast<Probe>(77), ""}};
  EXPECT_EQ(members(Mapping(odd, 2)), (std::vector<Probe>{static_cast<Probe>(77), static_cast<Probe>(-1)}));
}

TEST(EnumTextMapping, TranslatesBothWays) {
  const Mapping mapping(rows, 5);
  EXPECT_EQ(mapping.size(), 5U);
  for (const auto& [value, text] : mapping) {
    EXPECT_EQ(mapping.text(value), text);
    EXPECT_EQ(mapping.value(text), value);
  }
}

TEST(EnumTextMapping, IsACopyOfItsOwn) {
  const Mapping mapping(rows, 5);
  const Mapping copy = mapping;
  EXPECT_EQ(members(copy), members(mapping));
  EXPECT_NE(&copy.text(x_ray), &mapping.text(x_ray));
}

// Without a type of their own, the values of an enumeration may be unsigned.
enum Colour { red, green = 0xffffffff };

TEST(EnumTextMapping, TakesAnEnumerationOfUnsignedValues) {
  static_assert(std::is_unsigned_v<std::underlying_type_t<Colour>>);
  constexpr EnumTextMapping<Colour>::Initialiser colours[] = {{red, "red"}, {green, "green"}};
  const EnumTextMapping<Colour> mapping(colours, 2);
  EXPECT_EQ(mapping.text(green), "green");
  EXPECT_EQ(mapping.value("red"), red);
  EXPECT_EQ(message_of<std::invalid_argument>(
                [&] { static_cast<void>(mapping.text(static_cast<Colour>(0xfffffffe))); }),
            "EnumTextMapping: no text for the value 4294967294");
}

enum class Shade { light = -1, dark };

TEST(EnumTextMapping, TakesAScopedEnumeration) {
  constexpr EnumTextMapping<Shade>::Initialiser shades[] = {{Shade::light, "light"}, {Shade::dark, "dark"}};
  const EnumTextMapping<Shade> mapping(shades, 2);
  EXPECT_EQ(mapping.text(Shade::light), "light");
  EXPECT_EQ(mapping.value("dark"), Shade::dark);
}

TEST(EnumTextMapping, NamesTheValueOrTextThatItDoesNotHave) {
  const Mapping mapping(rows, 5);
  EXPECT_EQ(
      message_of<std::invalid_argument>([&] { static_cast<void>(mapping.text(static_cast<Probe>(9))); }),
      "EnumTextMapping: no text for the value 9");
  EXPECT_EQ(message_of<std::invalid_argument>([&] { static_cast<void>(mapping.value("X-ray")); }),
            "EnumTextMapping: no value for the text \"X-ray\"");
}

}  // namespace
