#include <database_entry/entries/crystal_structure_database_entry_data_source.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "support/sample_entry.h"

namespace {

using Source = CrystalStructureDatabaseEntryDataSource;
static_assert(std::has_virtual_destructor_v<Source>);

TEST(DataSource, AnswersNothingForEveryComponent) {
  const Source source;
  for_each_component(
      [&](auto component) { EXPECT_TRUE(component.fetch(source).is_null()) << component.label; });
}

TEST(DataSource, GivesADefaultIdentifier) {
  EXPECT_EQ(Source().identifier(), DatabaseEntryIdentifier());
}

}  // namespace
