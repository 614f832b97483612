#include <database_entry/foundations/enum_text_mapping.h>
#include <gtest/gtest.h>

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

std::vector<Probe> members(const Mapping& mapping) {
  std::vector<Probe> values;
  mapping.all_members(values);
  return values;
}

TEST(EnumTextMapping, ListsItsValuesInTheOrderOfTheTexts) {
  EXPECT_EQ(members(Mapping(rows, 5)), (std::vector<Probe>{electron, gamma_ray, neutron, unknown, x_ray}));
}

TEST(EnumTextMapping, AppendsItsValuesBehindWhatIsThere) {
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

TEST(EnumTextMapping, NamesTheValueOrTextThatItDoesNotHave) {
  const Mapping mapping(rows, 5);
  EXPECT_EQ(
      message_of<std::invalid_argument>([&] { static_cast<void>(mapping.text(static_cast<Probe>(9))); }),
      "EnumTextMapping: no text for the value 9");
  EXPECT_EQ(message_of<std::invalid_argument>([&] { static_cast<void>(mapping.value("X-ray")); }),
            "EnumTextMapping: no value for the text \"X-ray\"");
}

}  // namespace
