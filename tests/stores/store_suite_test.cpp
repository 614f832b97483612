// What holds for every store. Reading is tried on all of them, writing on those that take entries.
#include <database_entry/entries/components.h>
#include <database_entry/entries/crystal_structure_deferred_database_entry.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stores/entry_store.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "stores/linked_entry.h"
#include "stores/places.h"
#include "support/sample_entry.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

DatabaseEntryIdentifier named(const std::string& text) {
  return DatabaseEntryIdentifier(text);
}

std::vector<std::string> texts(const std::vector<DatabaseEntryIdentifier>& identifiers) {
  std::vector<std::string> result;
  for (const auto& identifier : identifiers) result.push_back(identifier.text());
  return result;
}

// The archive bytes of a component, or what there is instead.
template <class Row, class Holder>
std::string component_bytes(const Row& row, const THandle<typename Row::Type>& handle, const Holder&) {
  if (handle.is_null()) return "null";
  if constexpr (Row::archived) {
    return written([&](Archive& archive) { handle->write(archive); });
  } else {
    return row.name;
  }
}

template <class Place>
class EveryStore : public testing::Test {
 protected:
  void SetUp() override {
    if (!place_.is_there()) GTEST_SKIP() << "the server is not installed";
  }
  Place place_;
};
using ReadPlaces = testing::Types<MemoryPlace, SqlitePlace, ArchivePlace, PostgresqlPlace>;
TYPED_TEST_SUITE(EveryStore, ReadPlaces);

TYPED_TEST(EveryStore, GivesAnEntryByteForByte) {
  const auto store = this->place_.holding({sample_entry()});
  EXPECT_EQ(archived(*store->entry(named("ABCDEF"))), sample_bytes());
}

TYPED_TEST(EveryStore, GivesEachComponentOfASourceByteForByte) {
  const auto store = this->place_.holding({sample_entry()});
  const auto whole = sample_entry();
  for (const Prefetch prefetch : {Prefetch::none, Prefetch::all}) {
    const auto source = store->source(named("ABCDEF"), prefetch);
    EXPECT_EQ(source->identifier().text(), "ABCDEF");
    for_each_component([&](auto component) {
      if constexpr (component.archived) {
        EXPECT_EQ(component_bytes(component, component.fetch(*source), *source),
                  component_bytes(component, component.get(whole), whole))
            << component.name;
      }
    });
  }
}

TYPED_TEST(EveryStore, GivesComponentsInAnyOrder) {
  const auto store = this->place_.holding({sample_entry()});
  for_each_component([&](auto first) {
    const auto source = store->source(named("ABCDEF"));
    static_cast<void>(first.fetch(*source));
    for_each_component([&](auto then) { EXPECT_EQ(then.fetch(*source).get(), then.fetch(*source).get()); });
  });
}

TYPED_TEST(EveryStore, LetsADeferredEntryPrintAsItsImmediateOneDoes) {
  const auto store = this->place_.holding({sample_entry()});
  const CrystalStructureDeferredDatabaseEntry deferred(store->source(named("ABCDEF")));
  EXPECT_EQ(printed(deferred), printed(*store->entry(named("ABCDEF"))));
}

TYPED_TEST(EveryStore, ListsIdentifiersInTheOrderOfBytes) {
  const std::vector<std::string> in_order = {"",  std::string("\0", 1), "A",   "Z", "a",
                                             "b", "ab\xC3\xA4",         "\xFF"};
  std::vector<std::string> sorted = in_order;
  std::sort(sorted.begin(), sorted.end());
  Entries entries;
  for (const auto& identifier : in_order) {
    if (identifier.find('\0') == std::string::npos) entries.push_back(entry_named(identifier));
  }
  std::erase(sorted, std::string("\0", 1));
  const auto store = this->place_.holding(entries);
  EXPECT_EQ(texts(store->select({})), sorted);
  EXPECT_EQ(store->count(), sorted.size());
}

TYPED_TEST(EveryStore, PagesByTheLastIdentifierSeen) {
  const auto store =
      this->place_.holding({entry_named("C"), entry_named("A"), entry_named("D"), entry_named("B")});
  EXPECT_THAT(texts(store->select({}, {.after = {}, .limit = 2})), ElementsAre("A", "B"));
  EXPECT_THAT(texts(store->select({}, {.after = "B", .limit = 2})), ElementsAre("C", "D"));
  EXPECT_THAT(texts(store->select({}, {.after = "D", .limit = 2})), ElementsAre());
  EXPECT_THAT(texts(store->select({}, {.after = "BB", .limit = {}})), ElementsAre("C", "D"));
  EXPECT_THAT(texts(store->select({}, {.after = {}, .limit = 0})), ElementsAre());
}

TYPED_TEST(EveryStore, GivesTheColumnsOfWhatItFinds) {
  const auto store = this->place_.holding({entry_named("A"), entry_named("B")});
  const auto columns = store->select_columns({});
  ASSERT_EQ(columns.size(), 2U);
  EntryColumns expected = entry_columns(entry_named("B"), {});
  expected.stored_at = columns[1].stored_at;
  EXPECT_EQ(columns[1], expected);
  EXPECT_EQ(store->columns(named("B")), columns[1]);
}

TYPED_TEST(EveryStore, CountsByTheValuesOfAColumn) {
  const auto store =
      this->place_.holding({entry_of_year("A", 1999), entry_of_year("B", 2001), entry_of_year("C", 1999)});
  using Counts = std::vector<std::pair<std::string, std::uint64_t>>;
  EXPECT_EQ(store->tally("year"), (Counts{{"1999", 2}, {"2001", 1}}));
  EXPECT_EQ(store->tally("element"), (Counts{{"C", 3}, {"N", 3}}));
  EXPECT_EQ(store->tally("journal"), (Counts{{"J.Am.Chem.Soc.", 3}, {"JACSAT", 3}}));
  EXPECT_EQ(message_of<std::invalid_argument>([&] { static_cast<void>(store->tally("size")); }),
            "there is no column \"size\" to count by");
}

TYPED_TEST(EveryStore, NamesTheNearestIdentifierOfOneThatIsMissing) {
  const auto store =
      this->place_.holding({entry_named("AAAAAA"), entry_named("ABCDEF"), entry_named("ZZZZZZ")});
  EXPECT_FALSE(store->contains(named("ABCDEG")));
  EXPECT_TRUE(store->contains(named("ABCDEF")));
  try {
    static_cast<void>(store->source(named("ABCDEG")));
    FAIL();
  } catch (const EntryNotFound& error) {
    EXPECT_EQ(error.nearest(), "ABCDEF");
    EXPECT_EQ(error.what(), store->place() + ": there is no entry \"ABCDEG\"; the nearest is \"ABCDEF\"");
  }
  EXPECT_THROW(static_cast<void>(store->entry(named("ABCDEG"))), EntryNotFound);
  EXPECT_THROW(static_cast<void>(store->columns(named("ABCDEG"))), EntryNotFound);
  EXPECT_THROW(static_cast<void>(store->origin(named("ABCDEG"))), EntryNotFound);
}

TYPED_TEST(EveryStore, HasNothingNearWhereItIsEmpty) {
  const auto store = this->place_.holding({});
  EXPECT_EQ(message_of<EntryNotFound>([&] { static_cast<void>(store->entry(named("X"))); }),
            store->place() + ": there is no entry \"X\"");
  EXPECT_EQ(store->count(), 0U);
  EXPECT_THAT(store->select({}), ElementsAre());
}

TYPED_TEST(EveryStore, FindsNothingWrongWithItself) {
  const auto store = this->place_.holding({sample_entry(), entry_named("B")});
  std::vector<std::uint64_t> seen;
  const StoreReport report = store->verify([&](std::uint64_t done, std::uint64_t total) {
    seen = {done, total};
    return true;
  });
  for (const auto& problem : report.problems)
    ADD_FAILURE() << problem.entry << problem.component << problem.text;
  EXPECT_EQ(report.entries, 2U);
  EXPECT_GE(report.components, 20U);
}

TYPED_TEST(EveryStore, LetsASourceOutliveIt) {
  THandle<CrystalStructureDatabaseEntryDataSource> source;
  {
    const auto store = this->place_.holding({sample_entry()});
    source = store->source(named("ABCDEF"));
  }
  EXPECT_EQ(source->publication()->year, 1999);
}

TYPED_TEST(EveryStore, ReadsOneStateInASnapshot) {
  const auto store = this->place_.holding({sample_entry()});
  const auto snapshot = store->snapshot();
  const auto inner = store->snapshot();
  EXPECT_EQ(store->source(named("ABCDEF"))->publication()->year, 1999);
}

template <class Place>
class WritableStore : public EveryStore<Place> {};
using WritePlaces = testing::Types<MemoryPlace, SqlitePlace, PostgresqlPlace>;
TYPED_TEST_SUITE(WritableStore, WritePlaces);

TYPED_TEST(WritableStore, TakesAnEntry) {
  const auto store = this->place_.init();
  EXPECT_FALSE(store->is_read_only());
  EXPECT_EQ(store->put(sample_entry(), {}, OnDuplicate::refuse), StoreResult::added);
  EXPECT_EQ(archived(*store->entry(named("ABCDEF"))), sample_bytes());
}

TYPED_TEST(WritableStore, KeepsNullComponentsNull) {
  const auto store = this->place_.init();
  store->put(empty_entry(), {}, OnDuplicate::refuse);
  const auto source = store->source(named(""));
  for_each_component(
      [&](auto component) { EXPECT_TRUE(component.fetch(*source).is_null()) << component.name; });
  EXPECT_TRUE(store->verify().problems.empty());
}

TYPED_TEST(WritableStore, KeepsDefaultComponentsApartFromNullOnes) {
  ComponentHandles handles;
  for_each_component(
      [&](auto component) { handles[component] = THandle<typename decltype(component)::Type>::make(); });
  const auto store = this->place_.init();
  store->put(CrystalStructureImmediateDatabaseEntry::from(named("X"), handles), {}, OnDuplicate::refuse);
  const auto entry = store->entry(named("X"));
  for_each_component(
      [&](auto component) { EXPECT_FALSE(component.get(*entry).is_null()) << component.name; });
  EXPECT_TRUE(entry->published_geometry()->bonds.is_null());
}

TYPED_TEST(WritableStore, KeepsTheComponentsThatArchivesDoNotHold) {
  const auto store = this->place_.init();
  store->put(linked_entry(), {}, OnDuplicate::refuse);
  const auto entry = store->entry(named("LINKED"));
  const auto diagram = entry->chemical_diagram();
  ASSERT_EQ(diagram->atoms.size(), 4U);
  EXPECT_EQ(*diagram->atoms[2], (DiagramAtom{"N", "N", -1, 1.0, 1.0}));
  EXPECT_TRUE(diagram->atoms[1].is_null());
  EXPECT_EQ(diagram->atoms[0], diagram->atoms[3]);
  EXPECT_EQ(diagram->bonds[0]->second, diagram->atoms[2]);
  EXPECT_TRUE(diagram->bonds[1].is_null());
  const auto selectors = entry->disorder_selector();
  ASSERT_EQ(selectors->size(), 4U);
  EXPECT_EQ((*selectors)[0], (*selectors)[3]);
  EXPECT_EQ((*selectors)[2]->assembly, "B");
  EXPECT_EQ((*selectors)[0]->atoms[2]->label, "H1");
  const auto geometry = entry->published_geometry();
  EXPECT_TRUE(geometry->flag);
  ASSERT_EQ(geometry->bonds->size(), 4U);
  EXPECT_EQ((*geometry->bonds)[0]->length, UncertainValue(1.156, 0.004));
  EXPECT_TRUE((*geometry->bonds)[3]->first_atom.is_null());
  EXPECT_TRUE(store->verify().problems.empty());
}

// The same, from an entry or a source; whatever is asked first.
template <class Holder>
void expect_shared_objects(const Holder& entry, const THandle<CrystalDiagramMatch>& match) {
  EXPECT_EQ(match->atoms[0].first, entry.crystal_maker()->atoms()[0]);
  EXPECT_EQ(match->atoms[1].second, entry.chemical_diagram()->atoms[2]);
  EXPECT_EQ(match->bonds[0].second, entry.chemical_diagram()->bonds[0]);
  EXPECT_EQ(match->bonds[0].first->first, entry.crystal_maker()->atoms()[0]);
  const auto other = entry.crystal_connectivity_match();
  EXPECT_EQ(other->bonds[0].first, match->bonds[0].first);
  EXPECT_EQ(other->atoms[1].first, match->atoms[2].first);
  EXPECT_EQ(other->bonds[1].first->second, match->atoms[2].first);
  EXPECT_EQ(other->atoms[0].second, entry.connectivity_info()->connectivity()->atoms[0]);
  EXPECT_EQ(other->bonds[0].second, entry.connectivity_info()->connectivity()->bonds[0]);
  EXPECT_EQ((*entry.disorder_selector())[0]->atoms[0], entry.crystal_maker()->atoms()[0]);
  EXPECT_EQ((*entry.disorder_selector())[0]->atoms[2], match->atoms[2].first);
  EXPECT_EQ((*entry.published_geometry()->bonds)[3]->second_atom, match->atoms[2].first);
}

TYPED_TEST(WritableStore, GivesSharedAtomsAndBondsAsTheSameObjects) {
  const auto store = this->place_.init();
  store->put(linked_entry(), {}, OnDuplicate::refuse);
  const auto entry = store->entry(named("LINKED"));
  expect_shared_objects(*entry, entry->crystal_diagram_match());
  for (const Prefetch prefetch : {Prefetch::none, Prefetch::all}) {
    const auto source = store->source(named("LINKED"), prefetch);
    expect_shared_objects(*source, source->crystal_diagram_match());
    const auto later = store->source(named("LINKED"), prefetch);
    static_cast<void>(later->crystal_maker());
    expect_shared_objects(*later, later->crystal_diagram_match());
  }
}

TYPED_TEST(WritableStore, SaysThatAnEntryIsThereAlreadyAndUnchanged) {
  const auto store = this->place_.init();
  store->put(linked_entry(), {"a.cif", "x", "", 1000}, OnDuplicate::refuse);
  for (const OnDuplicate rule : {OnDuplicate::keep, OnDuplicate::replace, OnDuplicate::refuse}) {
    EXPECT_EQ(store->put(linked_entry(), {"a.cif", "x", "", 2000}, rule), StoreResult::unchanged);
    EXPECT_EQ(store->put(linked_entry(), {}, rule), StoreResult::unchanged);
  }
  EXPECT_EQ(store->origin(named("LINKED")), (EntryOrigin{"a.cif", "x", "", 1000}));
  EXPECT_EQ(store->count(), 1U);
}

TYPED_TEST(WritableStore, KeepsReplacesOrRefusesAnotherEntryOfTheSameIdentifier) {
  const auto store = this->place_.init();
  store->put(entry_of_year("A", 1999), {}, OnDuplicate::refuse);
  EXPECT_EQ(store->put(entry_of_year("A", 2001), {}, OnDuplicate::keep), StoreResult::kept);
  EXPECT_EQ(store->entry(named("A"))->publication()->year, 1999);
  EXPECT_EQ(
      message_of<EntryAlreadyStored>([&] { store->put(entry_of_year("A", 2001), {}, OnDuplicate::refuse); }),
      store->place() + ": entry A: an entry of this identifier is there already");
  EXPECT_EQ(store->put(entry_of_year("A", 2001), {}, OnDuplicate::replace), StoreResult::replaced);
  EXPECT_EQ(store->entry(named("A"))->publication()->year, 2001);
  EXPECT_EQ(store->tally("year").size(), 1U);
  EXPECT_TRUE(store->verify().problems.empty());
}

TYPED_TEST(WritableStore, TakesTheSameFileAndBlockForTheSameEntryWhateverItsIdentifier) {
  const auto store = this->place_.init();
  store->put(entry_named("OLD"), {"a.cif", "x"}, OnDuplicate::refuse);
  EXPECT_EQ(store->put(entry_named("NEW"), {"a.cif", "x"}, OnDuplicate::keep), StoreResult::kept);
  EXPECT_EQ(store->put(entry_named("NEW"), {"a.cif", "x"}, OnDuplicate::replace), StoreResult::replaced);
  EXPECT_EQ(store->put(entry_named("OTHER"), {"a.cif", "y"}, OnDuplicate::refuse), StoreResult::added);
  EXPECT_EQ(store->put(entry_named("THIRD"), {"b.cif", "x"}, OnDuplicate::refuse), StoreResult::added);
  EXPECT_EQ(store->put(entry_named("PLAIN"), {"a.cif", ""}, OnDuplicate::refuse), StoreResult::added);
  EXPECT_THAT(texts(store->select({})), ElementsAre("NEW", "OTHER", "PLAIN", "THIRD"));
  EXPECT_TRUE(store->verify().problems.empty());
}

TYPED_TEST(WritableStore, RefusesAReplacementThatGivesTwoEntriesOneIdentifier) {
  const auto store = this->place_.init();
  store->put(entry_of_year("A", 1999), {"a.cif", "x"}, OnDuplicate::refuse);
  store->put(entry_of_year("B", 1999), {"b.cif", "x"}, OnDuplicate::refuse);
  EXPECT_EQ(message_of<EntryStoreError>([&] {
              store->put(entry_of_year("B", 2001), {"a.cif", "x"}, OnDuplicate::replace);
            }),
            store->place() +
                ": entry B: it would replace \"A\", which is of the same file and block, but its "
                "identifier is that of another entry");
  EXPECT_EQ(store->entry(named("B"))->publication()->year, 1999);
}

TYPED_TEST(WritableStore, StoresAllEntriesOfACallOrNone) {
  const auto store = this->place_.init();
  store->put(entry_of_year("B", 1999), {}, OnDuplicate::refuse);
  const Entries entries = {entry_named("A"), entry_of_year("B", 2001), entry_named("C")};
  EXPECT_THROW(static_cast<void>(store->put_all(puts_of(entries), OnDuplicate::refuse)), EntryAlreadyStored);
  EXPECT_THAT(texts(store->select({})), ElementsAre("B"));
  EXPECT_THAT(store->put_all(puts_of(entries), OnDuplicate::keep),
              ElementsAre(StoreResult::added, StoreResult::kept, StoreResult::added));
  EXPECT_TRUE(store->verify().problems.empty());
}

TYPED_TEST(WritableStore, SeesTheEarlierEntriesOfTheSameCall) {
  const auto store = this->place_.init();
  const Entries entries = {entry_of_year("A", 1999), entry_of_year("A", 1999), entry_of_year("A", 2001)};
  EXPECT_THAT(store->put_all(puts_of(entries), OnDuplicate::replace),
              ElementsAre(StoreResult::added, StoreResult::unchanged, StoreResult::replaced));
  EXPECT_TRUE(store->verify().problems.empty());
}

TYPED_TEST(WritableStore, RemovesAnEntryAndAllThatItWasFoundBy) {
  const auto store = this->place_.init();
  store->put(linked_entry("A"), {"a.cif", "x"}, OnDuplicate::refuse);
  store->put(entry_named("B"), {}, OnDuplicate::refuse);
  store->remove(named("A"));
  EXPECT_THAT(texts(store->select({})), ElementsAre("B"));
  EXPECT_THROW(store->remove(named("A")), EntryNotFound);
  EXPECT_TRUE(store->verify().problems.empty());
  EXPECT_EQ(store->put(linked_entry("A"), {"a.cif", "x"}, OnDuplicate::refuse), StoreResult::added);
}

TYPED_TEST(WritableStore, RemembersWhichFilesWereImportedUntilAnEntryOfThemIsRemoved) {
  const auto store = this->place_.init();
  EXPECT_FALSE(store->has_imported("a.cif", "1"));
  store->put(entry_named("A"), {"a.cif", "x"}, OnDuplicate::refuse);
  store->set_imported("a.cif", "1");
  EXPECT_TRUE(store->has_imported("a.cif", "1"));
  EXPECT_FALSE(store->has_imported("a.cif", "2"));
  EXPECT_FALSE(store->has_imported("b.cif", "1"));
  store->remove(named("A"));
  EXPECT_FALSE(store->has_imported("a.cif", "1"));
}

TYPED_TEST(WritableStore, RemembersWhereAnEntryCameFrom) {
  const auto store = this->place_.init();
  const EntryOrigin origin = {std::string("a\0'b\xFF.cif", 8), "x", std::string(64, 'a'), 1700000000};
  store->put(sample_entry(), origin, OnDuplicate::refuse);
  EXPECT_EQ(store->origin(named("ABCDEF")), origin);
  store->put(entry_named("B"), {}, OnDuplicate::refuse);
  EXPECT_GT(store->origin(named("B")).stored_at, 1700000000);
}

struct Hostile {
  std::string identifier;
  const char* why;
};
const std::vector<Hostile> hostile = {
    {"", "empty"},
    {"'; DROP TABLE entry; --", "the end of a text of SQL"},
    {"\"", "a quotation mark"},
    {"?1 $1 :a %s %n \\", "what stands for parameters"},
    {std::string("a\0b", 3), "a NUL"},
    {std::string(10'000, 'x'), "as long as may be"},
    {std::string(9'999, 'x') + "y", "the same but for its last byte"},
    {"\xF0\x9F\x92\x8E", "four bytes of UTF-8"},
    {"\xC3\x28\xFF", "no UTF-8"},
    {" a ", "blanks at its ends"},
    {"NULL", "the word"},
    {"1e400", "like a number"},
};

TYPED_TEST(WritableStore, KeepsAnyBytesAsAnIdentifier) {
  const auto store = this->place_.init();
  for (const auto& [identifier, why] : hostile) {
    EXPECT_EQ(store->put(entry_named(identifier), {}, OnDuplicate::refuse), StoreResult::added) << why;
  }
  for (const auto& [identifier, why] : hostile) {
    EXPECT_EQ(store->entry(named(identifier))->identifier().text(), identifier) << why;
    EXPECT_EQ(store->put(entry_named(identifier), {}, OnDuplicate::refuse), StoreResult::unchanged) << why;
  }
  EXPECT_EQ(store->count(), hostile.size());
  for (const auto& [identifier, why] : hostile) store->remove(named(identifier));
  EXPECT_EQ(store->count(), 0U);
}

TYPED_TEST(WritableStore, KeepsAnyBytesInEveryTextThatEntriesAreFoundBy) {
  const auto store = this->place_.init();
  for (const auto& [text, why] : hostile) {
    auto entry = entry_named("X");
    ChemicalInfo chemical;
    chemical.formula = chemical.name = text;
    chemical.synonyms = {text, text + "2"};
    entry.set_chemical_info(handle_to(chemical));
    entry.set_publication(handle_to(Publication({text, "B.Second"}, Journal(4), text, 1999, text)));
    EXPECT_NO_THROW(store->put(entry, {text, text}, OnDuplicate::replace)) << why;
    const auto back = store->entry(named("X"));
    // What an archive gives back of a text ends at its NUL.
    EXPECT_EQ(back->chemical_info()->name, std::string(text.c_str())) << why;
    EXPECT_TRUE(store->verify().problems.empty()) << why;
  }
}

TYPED_TEST(WritableStore, RefusesAnIdentifierThatIsTooLong) {
  const auto store = this->place_.init();
  const std::string text = message_of<EntryStoreError>(
      [&] { store->put(entry_named(std::string(10'001, 'x')), {}, OnDuplicate::refuse); });
  EXPECT_THAT(text, HasSubstr("its identifier has 10001 bytes; 10000 is the most"));
  EXPECT_EQ(store->count(), 0U);
}

TYPED_TEST(WritableStore, RefusesAComponentThatCouldNotBeReadBack) {
  auto entry = sample_entry();
  ExperimentalInfo experiment;
  experiment.powder = static_cast<ExperimentalInfo::PowderStudy>(77);
  entry.set_experimental_info(handle_to(experiment));
  const auto store = this->place_.init();
  EXPECT_EQ(message_of<EntryStoreError>([&] { store->put(entry, {}, OnDuplicate::refuse); }),
            store->place() + ": entry ABCDEF, experimental info: Invalid ExperimentalInfo::PowderStudy");
  EXPECT_EQ(store->count(), 0U);
}

TYPED_TEST(WritableStore, RefusesAComponentThatNoArchiveCouldHold) {
  const auto base = sample_entry();
  const CrystalStructureImmediateDatabaseEntry entry(named("X"),
                                                     handle_to(CrystalMaker(base.cell(), {THandle<Atom>()})));
  const auto store = this->place_.init();
  EXPECT_THAT(message_of<EntryStoreError>([&] { store->put(entry, {}, OnDuplicate::refuse); }),
              HasSubstr("entry X, crystal maker: "));
}

TYPED_TEST(WritableStore, DoesNotSeeInASnapshotWhatIsPutMeanwhile) {
  const auto store = this->place_.init();
  store->put(entry_of_year("A", 1999), {}, OnDuplicate::refuse);
  {
    const auto snapshot = store->snapshot();
    store->put(entry_of_year("A", 2001), {}, OnDuplicate::replace);
    store->put(entry_named("B"), {}, OnDuplicate::refuse);
    EXPECT_EQ(store->entry(named("A"))->publication()->year, 1999);
    EXPECT_EQ(store->count(), 1U);
  }
  EXPECT_EQ(store->entry(named("A"))->publication()->year, 2001);
  EXPECT_EQ(store->count(), 2U);
}

TYPED_TEST(WritableStore, GivesNoMixtureOfAnEntryAndItsReplacement) {
  const auto store = this->place_.init();
  store->put(entry_of_year("A", 1999), {}, OnDuplicate::refuse);
  const auto begun = store->source(named("A"));
  const auto fresh = store->source(named("A"));
  static_cast<void>(begun->cell());
  store->put(entry_of_year("A", 2001), {}, OnDuplicate::replace);
  EXPECT_THAT(message_of<EntryStoreError>([&] { static_cast<void>(begun->publication()); }),
              HasSubstr("entry A, publication: the entry was replaced while it was read"));
  EXPECT_EQ(fresh->publication()->year, 2001);
  store->remove(named("A"));
  EXPECT_THAT(message_of<EntryStoreError>([&] { static_cast<void>(fresh->crystal_info()); }),
              HasSubstr("the entry was removed while it was read"));
}

TYPED_TEST(WritableStore, MakesItsColumnsAnew) {
  const auto store = this->place_.init();
  store->put(linked_entry("A"), {"a.cif", "x"}, OnDuplicate::refuse);
  store->put(entry_named("B"), {}, OnDuplicate::refuse);
  const auto before = store->select_columns({});
  const StoreReport report = store->reindex();
  EXPECT_EQ(report.entries, 2U);
  EXPECT_TRUE(report.problems.empty());
  EXPECT_EQ(store->select_columns({}), before);
  EXPECT_TRUE(store->verify().problems.empty());
}

TYPED_TEST(WritableStore, PassesWhatAnAccessorThrowsAndStoresNothing) {
  class Failing : public CrystalStructureImmediateDatabaseEntry {
   public:
    Failing() : CrystalStructureImmediateDatabaseEntry(sample_entry()) {}
    [[nodiscard]] THandle<CrystalInfo> crystal_info() const override { throw std::range_error("no"); }
  };
  const auto store = this->place_.init();
  EXPECT_THROW(store->put(Failing(), {}, OnDuplicate::refuse), std::range_error);
  EXPECT_EQ(store->count(), 0U);
}

}  // namespace
