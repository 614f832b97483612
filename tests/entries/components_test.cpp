#include <database_entry/entries/components.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "support/sample_entry.h"

namespace {

// Stored entries hold these numbers: none of them ever changes.
static_assert(static_cast<int>(ComponentKind::crystal_maker) == 1);
static_assert(static_cast<int>(ComponentKind::cell) == 2);
static_assert(static_cast<int>(ComponentKind::publication) == 3);
static_assert(static_cast<int>(ComponentKind::experimental_info) == 4);
static_assert(static_cast<int>(ComponentKind::editors_info) == 5);
static_assert(static_cast<int>(ComponentKind::chemical_info) == 6);
static_assert(static_cast<int>(ComponentKind::crystal_info) == 7);
static_assert(static_cast<int>(ComponentKind::connectivity_info) == 8);
static_assert(static_cast<int>(ComponentKind::cross_reference_info) == 9);
static_assert(static_cast<int>(ComponentKind::deposition_info) == 10);
static_assert(static_cast<int>(ComponentKind::chemical_diagram) == 11);
static_assert(static_cast<int>(ComponentKind::crystal_diagram_match) == 12);
static_assert(static_cast<int>(ComponentKind::connectivity_diagram_match) == 13);
static_assert(static_cast<int>(ComponentKind::crystal_connectivity_match) == 14);
static_assert(static_cast<int>(ComponentKind::disorder_selector) == 15);
static_assert(static_cast<int>(ComponentKind::published_geometry) == 16);

static_assert(component_count == 16);
static_assert(std::is_same_v<decltype(component_row<ComponentKind::cell>)::Type, Cell>);

TEST(Components, AreWalkedInTheOrderOfTheirKinds) {
  int kind = 0;
  for_each_component(
      [&](auto component) { EXPECT_EQ(static_cast<int>(component.kind), ++kind) << component.name; });
  EXPECT_EQ(kind, 16);
}

TEST(Components, HaveTheKindsOneToTenInTheArchiveAndNoOther) {
  for_each_component([](auto component) {
    EXPECT_EQ(component.archived, static_cast<int>(component.kind) <= 10) << component.name;
  });
}

TEST(Components, ArePrintedInTheOrderOfTheEntryTenOfThem) {
  std::vector<std::string> labels;
  for_each_component_in_entry_order([&](auto component) {
    if (component.printed) labels.emplace_back(component.label);
  });
  EXPECT_EQ(labels,
            (std::vector<std::string>{"crystal maker", "publication", "experimental info", "editors info",
                                      "chemical info", "crystal info", "chemical diagram",
                                      "connectivity info", "cross reference info", "deposition info"}));
}

TEST(Components, HaveTheirNameWithBlanksAsTheirLabel) {
  for_each_component([](auto component) {
    std::string name = component.name;
    for (char& letter : name) {
      if (letter == '_') letter = ' ';
    }
    EXPECT_EQ(name, component.label);
  });
}

TEST(Components, HaveASetterAllButTheSevenThatAreFixedWhenTheEntryIsMade) {
  std::vector<std::string> fixed;
  for_each_component([&](auto component) {
    if (!component.has_setter) fixed.emplace_back(component.name);
  });
  EXPECT_EQ(fixed, (std::vector<std::string>{"crystal_maker", "cell", "connectivity_info", "chemical_diagram",
                                             "crystal_diagram_match", "connectivity_diagram_match",
                                             "crystal_connectivity_match"}));
}

struct WithoutCell : CrystalStructureImmediateDatabaseEntry {
  WithoutCell() : CrystalStructureImmediateDatabaseEntry(sample_entry()) {}
  THandle<Cell> cell() const override { return {}; }
};

TEST(Components, ComeThroughTheVirtualAccessor) {
  const WithoutCell entry;
  EXPECT_TRUE(component_row<ComponentKind::cell>.get(entry).is_null());
}

std::vector<const void*> gone;

// Tells which value goes.
template <class>
struct Noted {
  Noted() = default;
  Noted(const Noted&) = delete;
  Noted& operator=(const Noted&) = delete;
  ~Noted() { gone.push_back(this); }
};

TEST(PerComponent, LetsItsValuesGoInTheReverseOrderOfTheEntry) {
  std::vector<const void*> made;
  {
    PerComponent<Noted> values;
    for_each_component_in_entry_order([&](auto component) { made.push_back(&values[component]); });
  }
  EXPECT_EQ(gone, std::vector<const void*>(made.rbegin(), made.rend()));
}

}  // namespace
