// What people look at: entries in words, charts, tables that fit.
#include <database_entry/entries/components.h>
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <exchange/entry_json.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "tools/output/bar_chart.h"
#include "tools/output/field_values.h"
#include "tools/output/pretty_entry.h"
#include "tools/output/table_output.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;

CrystalStructureImmediateDatabaseEntry new_entry() {
  ComponentHandles components;
  for_each_component([&](auto component) {
    using Component = typename decltype(component)::Type;
    components[component] = THandle<Component>(new Component);
  });
  return CrystalStructureImmediateDatabaseEntry::from(DatabaseEntryIdentifier("NEW"), components);
}

TEST(PrettyEntry, HasAUnitForFieldsThatThereAreOnly) {
  std::map<std::string, nlohmann::ordered_json> fields;
  for (const auto& [name, value] : field_values(entry_json(new_entry()))) fields[name] = value;
  for (const auto& [name, unit] : field_units()) EXPECT_EQ(fields.count(name), 1U) << name;
}

TEST(PrettyEntry, BreaksLongTextsAtBlanks) {
  CrystalStructureImmediateDatabaseEntry entry = new_entry();
  const auto info = THandle<CrystalInfo>(new CrystalInfo);
  info->notes = "one two three four five six seven eight nine ten";
  entry.set_crystal_info(info);
  std::ostringstream out;
  print_pretty(out, entry, 40);
  EXPECT_THAT(out.str(), HasSubstr("crystal info\n"
                                   "  notes  one two three four five six\n"
                                   "         seven eight nine ten\n"));
}

TEST(PrettyEntry, LeavesOutWhatIsNotKnown) {
  std::ostringstream out;
  print_pretty(out, new_entry(), 0);
  for (const char* word : {"unknown", "0000-00-00", "no errors", "inapplicable", "temperature"}) {
    EXPECT_THAT(out.str(), Not(HasSubstr(word)));
  }
}

TEST(FieldValues, AreNamedByTheirPlaces) {
  EXPECT_THAT(
      field_values({{"cell", {{"a", 5.5}, {"operators", {"x,y,z", "-x,y,z"}}}},
                    {"atoms", {{{"label", "Na1"}}, {{"label", "Cl1"}}}},
                    {"nothing", nlohmann::ordered_json::array()}}),
      ElementsAre(Pair("cell.a", 5.5), Pair("cell.operators", nlohmann::ordered_json({"x,y,z", "-x,y,z"})),
                  Pair("atoms[1].label", "Na1"), Pair("atoms[2].label", "Cl1")));
}

TEST(BarChart, IsTheSameTextForTheSameRows) {
  EXPECT_EQ(bar_chart("A & B", {{"<x>", 10}, {"y", 5}}),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"760\" height=\"80\" viewBox=\"0 0 760 80\" "
            "font-family=\"sans-serif\" font-size=\"12\">\n"
            "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n"
            "<text x=\"10\" y=\"22\" font-size=\"15\" font-weight=\"bold\">A &amp; B</text>\n"
            "<text x=\"192\" y=\"47.0\" text-anchor=\"end\">&lt;x&gt;</text><rect x=\"200\" y=\"36.0\" "
            "width=\"480.0\" height=\"14.0\" fill=\"#4c78a8\"/><text x=\"686.0\" y=\"47.0\">10</text>\n"
            "<text x=\"192\" y=\"65.0\" text-anchor=\"end\">y</text><rect x=\"200\" y=\"54.0\" "
            "width=\"240.0\" height=\"14.0\" fill=\"#4c78a8\"/><text x=\"446.0\" y=\"65.0\">5</text>\n"
            "</svg>\n");
}

TEST(Table, CutsItsWidestTextsUntilItFits) {
  std::ostringstream out;
  TableOutput table(out, OutputFormat::table, {"id", "name", "year"}, 30);
  table.add({"A1234567890", "a very long name that fits nowhere", 1999});
  table.add({"B", "Größenordnungen", 2001});
  table.finish();
  EXPECT_EQ(out.str(),
            "id           name         year\n"
            "A1234567890  a very lon…  1999\n"
            "B            Größenordn…  2001\n");
}

TEST(Table, KeepsNumbersAndTheFirstColumnWholeOnANarrowTerminal) {
  std::ostringstream out;
  TableOutput table(out, OutputFormat::table, {"identifier", "name", "number"}, 5);
  table.add({"A1234567890", "a very long name", 123456789});
  table.finish();
  EXPECT_EQ(out.str(),
            "identifier   name         number\n"
            "A1234567890  a very …  123456789\n");
}

TEST(Table, JoinsListsAsItsColumnSays) {
  std::ostringstream out;
  TableOutput table(out, OutputFormat::text, {{"authors", "; "}, "numbers"});
  table.add({{"A, B.", "C, D."}, {1, 2}});
  table.finish();
  EXPECT_EQ(out.str(), "A, B.; C, D.\t1, 2\n");
}

}  // namespace
