// The lists of fields that no archive walks: what stores, JSON and other languages call them.
#include <database_entry/database_entry.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mathematics/uncertain_value.h>

#include <string>
#include <tuple>
#include <vector>

namespace {

using testing::ElementsAre;

template <class Record>
std::vector<std::string> field_names() {
  return std::apply([](const auto&... field) { return std::vector<std::string>{field.name...}; },
                    Record::fields());
}

TEST(FieldLists, NameTheFieldsOfWhatIsNotArchived) {
  EXPECT_THAT(field_names<Bond>(), ElementsAre("first", "second", "type"));
  EXPECT_THAT(field_names<ConnectivityBond>(), ElementsAre("first", "second", "type"));
  EXPECT_THAT(field_names<DiagramBond>(), ElementsAre("first", "second", "type"));
  EXPECT_THAT(field_names<DiagramAtom>(), ElementsAre("element", "label", "charge", "x", "y"));
  EXPECT_THAT(field_names<ChemicalDiagram>(), ElementsAre("atoms", "bonds"));
  EXPECT_THAT(field_names<DisorderSelector>(), ElementsAre("assembly", "group", "atoms"));
  EXPECT_THAT(field_names<PublishedGeometry>(), ElementsAre("bonds", "flag"));
}

TEST(FieldLists, NameTheFieldsOfWhatHidesThem) {
  EXPECT_THAT(field_names<UncertainValue>(), ElementsAre("value", "standard_uncertainty"));
  EXPECT_THAT(field_names<DatabaseEntryIdentifier>(), ElementsAre("text"));
}

}  // namespace
