// The free store gives out at every allocation in turn, once and from then on: nothing leaks, what promises
// to leave its object as it was does, and a read leaves an object that can be used.
#include <database_entry/database_entry.h>
#include <gtest/gtest.h>
#include <reliability/support/heap.h>
#include <reliability/support/subject_test.h>

#include <sstream>

namespace {

constexpr heap::Failing both_ways[] = {heap::Failing::once, heap::Failing::from_then_on};

// Fails the allocations of `action`, which works on what `prepare` makes anew each time, one after the other
// until it gets through. After each failure calls `check` with the prepared thing. Gives the number of
// failures.
template <class Prepare, class Action, class Check>
int fail_every_allocation(const Prepare& prepare, const Action& action, const Check& check) {
  int failures = 0;
  for (const heap::Failing failing : both_ways) {
    bool happened = true;
    for (std::size_t index = 0; happened; ++index) {
      const std::size_t live = heap::live_bytes();
      {
        auto prepared = prepare();
        bool threw = false;
        {
          const heap::FailAllocation fault(index, failing);
          try {
            action(prepared);
          } catch (const std::bad_alloc&) {
            threw = true;
          }
          happened = fault.happened();
        }
        if (threw) check(prepared);
        EXPECT_TRUE(happened || !threw);
        failures += threw ? 1 : 0;
      }
      EXPECT_EQ(heap::live_bytes(), live) << "allocation " << index;
      if (testing::Test::HasFailure()) return failures;
    }
  }
  return failures;
}

// For actions that promise all or nothing: `state` of what was prepared is the same after a failure.
template <class Prepare, class State, class Action>
void expect_all_or_nothing(const Prepare& prepare, const State& state, const Action& action) {
  const auto untouched = prepare();
  const auto expected = state(untouched);
  const auto check = [&](const auto& prepared) { ASSERT_EQ(state(prepared), expected); };
  EXPECT_GT(fail_every_allocation(prepare, action, check), 0) << "nothing could fail";
}

struct Nothing {};
Nothing nothing() {
  return {};
}

// For actions that make something: there is nothing that it could leave.
template <class Action>
void expect_no_leak(const Action& action) {
  const int failures = fail_every_allocation(
      nothing, [&](Nothing) { action(); }, [](Nothing) {});
  EXPECT_GT(failures, 0) << "nothing could fail";
}

using OutOfMemory = SubjectTest;

TEST_P(OutOfMemory, MakingAnEmptyOneLeaksNothing) {
  expect_no_leak([] { static_cast<void>(GetParam().make()); });
}

TEST_P(OutOfMemory, AReadLeavesAnObjectThatCanBeReadAgain) {
  fail_every_allocation(
      GetParam().make, [](const auto& object) { read_stream(*object, whole()); },
      [](const auto& object) {
        read_stream(*object, whole());
        ASSERT_EQ(archived(*object), whole());
      });
}

TEST_P(OutOfMemory, AReadOverAFullOneLeavesAnObjectThatCanBeReadAgain) {
  fail_every_allocation(
      full, [](const auto& object) { read_stream(*object, whole()); },
      [](const auto& object) {
        read_stream(*object, whole());
        ASSERT_EQ(archived(*object), whole());
      });
}

TEST_P(OutOfMemory, AReadOfHalfAStreamLeaksNothing) {
  const std::string half = whole().substr(0, whole().size() / 2);
  fail_every_allocation(
      GetParam().make, [&](const auto& object) { static_cast<void>(reads_whole(*object, half)); },
      [](const auto& object) {
        read_stream(*object, whole());
        ASSERT_EQ(archived(*object), whole());
      });
}

TEST_P(OutOfMemory, AWriteLeavesTheObjectAsItWas) {
  const auto object = full();
  const MemorySink sink;
  Archive archive(sink.stream());
  fail_every_allocation(
      nothing, [&](Nothing) { object->write(archive); },
      [&](Nothing) { ASSERT_EQ(archived(*object), whole()); });
  EXPECT_EQ(archived(*object), whole());
}

INSTANTIATE_TEST_SUITE_P(Everything, OutOfMemory, testing::ValuesIn(subjects()),
                         testing::PrintToStringParamName());

// Longer than what a std::string holds without the free store.
const std::string long_text = "a text that is long enough to need the free store";

DatabaseEntryIdentifier long_identifier() {
  return DatabaseEntryIdentifier(long_text);
}

TEST(OutOfMemoryConstructors, OfTheRecordsLeakNothing) {
  const std::vector<std::string> texts(3, long_text);
  const std::vector<ChemicalClassification> classes(3,
                                                    ChemicalClassification(ChemicalClassification::steroid));
  const Journal journal(4);
  expect_no_leak([] { static_cast<void>(Journal(62)); });
  expect_no_leak([&] { static_cast<void>(Publication(texts, journal, long_text, 1979, long_text)); });
  expect_no_leak([&] {
    static_cast<void>(ChemicalInfo(long_text, long_text, long_text, long_text, long_text, long_text,
                                   long_text, classes, texts));
  });
  expect_no_leak([] {
    static_cast<void>(CrystalInfo(1, 1, long_text, long_text, long_text, long_text, long_text, long_text,
                                  long_text, long_text, long_text, long_text, long_text));
  });
  expect_no_leak([] {
    static_cast<void>(ExperimentalInfo(1, long_text, long_text, 1, 1, 1, Range<double, DoubleComparator>(),
                                       ExperimentalInfo::neutron, long_text, true, long_text,
                                       ExperimentalInfo::powder_study, long_text,
                                       ExperimentalInfo::diffractometer));
  });
  expect_no_leak([] {
    static_cast<void>(EditorsInfo(Date(), Date(), EditorsInfo::qualitative, 1, long_text,
                                  EditorsInfo::not_matched, long_text, 7, long_text, long_text,
                                  EditorsInfo::referred_problem, EditorsInfo::all_errors_ignored));
  });
}

TEST(OutOfMemoryConstructors, OfCrossReferencesLeakNothing) {
  const std::vector<DatabaseEntryIdentifier> identifiers(3, long_identifier());
  const auto type = DatabaseCrossReference::racemate;
  expect_no_leak([] { static_cast<void>(long_identifier()); });
  expect_no_leak([&] { static_cast<void>(DatabaseCrossReference(type, long_text)); });
  expect_no_leak([&] { static_cast<void>(DatabaseCrossReference(type, long_text, identifiers[0])); });
  expect_no_leak([&] { static_cast<void>(DatabaseCrossReference(type, long_text, identifiers)); });
}

TEST(OutOfMemoryConstructors, OfAHandleDeletesTheTarget) {
  expect_no_leak([] { static_cast<void>(THandle<std::string>(new std::string(long_text))); });
}

TEST(OutOfMemoryConstructors, OfAnEnumerationsTextsLeakNothing) {
  expect_no_leak([] { static_cast<void>(ExperimentalInfo::radiation_probe_text()); });
  expect_no_leak([] { static_cast<void>(DepositionInfo::deposition_type_text()); });
}

TEST(OutOfMemoryConstructors, OfExpressionsLeakNothing) {
  expect_no_leak([] { static_cast<void>(Regex("^(a|[b-d]+?)\\s*(x{2,3})$")); });
}

TEST(OutOfMemoryConstructors, OfEntriesLeakNothing) {
  using Source = CrystalStructureDatabaseEntryDataSource;
  const THandle<CrystalMaker> maker(new CrystalMaker);
  expect_no_leak(
      [&] { static_cast<void>(CrystalStructureImmediateDatabaseEntry(long_identifier(), maker)); });
  expect_no_leak(
      [] { static_cast<void>(CrystalStructureDeferredDatabaseEntry(THandle<Source>(new Source))); });
}

template <class Printable>
std::string text_of(const Printable& value) {
  return printed(value);
}

TEST(OutOfMemoryChanges, ASetTextSetsOrLeavesEverything) {
  const auto some = [] {
    DepositionInfo info;
    info.set_text(DepositionInfo::russian, "R77, a text that needs the free store");
    info.set_text(DepositionInfo::vorn, "VORN 12, a text that needs the free store");
    return info;
  };
  expect_all_or_nothing(some, text_of<DepositionInfo>, [](DepositionInfo& info) {
    info.set_text(DepositionInfo::jds, "  12/34, a text that needs the free store\t");
  });
}

TEST(OutOfMemoryChanges, ATextIsRemovedWithoutMemory) {
  DepositionInfo info;
  info.set_text(DepositionInfo::russian, "R77, a text that needs the free store");
  const heap::FailAllocation fault(0, heap::Failing::from_then_on);
  info.set_text(DepositionInfo::russian, " \t ");
  EXPECT_FALSE(info.has_text(DepositionInfo::russian));
}

TEST(OutOfMemoryChanges, AnInsertInsertsOrLeavesEverything) {
  const auto some = [] {
    CrossReferenceInfo info;
    info.insert(DatabaseCrossReference(DatabaseCrossReference::isomer, long_text));
    return info;
  };
  const DatabaseCrossReference more(DatabaseCrossReference::racemate, long_text);
  expect_all_or_nothing(some, text_of<CrossReferenceInfo>,
                        [&](CrossReferenceInfo& info) { info.insert(more); });
}

TEST(OutOfMemoryChanges, ASetterSetsOrLeavesEverything) {
  const auto entry = [] {
    return CrystalStructureImmediateDatabaseEntry(DatabaseEntryIdentifier("ABCDEF"),
                                                  THandle<CrystalMaker>(new CrystalMaker));
  };
  const auto text = text_of<CrystalStructureImmediateDatabaseEntry>;
  expect_all_or_nothing(entry, text, [](auto& e) { e.set_identifier(long_identifier()); });
  expect_all_or_nothing(entry, text,
                        [](auto& e) { e.set_publication(THandle<Publication>(new Publication)); });
  expect_all_or_nothing(entry, text,
                        [](auto& e) { e.set_crystal_info(THandle<CrystalInfo>(new CrystalInfo)); });
}

TEST(OutOfMemoryChanges, AConnectivityEntryTakesAnIdentifierOrLeavesEverything) {
  const auto entry = [] {
    return ChemicalConnectivityDatabaseEntry(DatabaseEntryIdentifier("old"), "name", THandle<Connectivity>());
  };
  const auto text = [](const ChemicalConnectivityDatabaseEntry& e) { return e.identifier.text() + e.name; };
  expect_all_or_nothing(entry, text, [](auto& e) {
    e.set_identifier(DatabaseEntryIdentifier("12.5 a-name-that-needs-the-free-store.qdx"));
  });
}

TEST(OutOfMemoryChanges, ADeferredEntryAsksItsSourceAgain) {
  class Source : public CrystalStructureDatabaseEntryDataSource {
   public:
    [[nodiscard]] THandle<Publication> publication() const override {
      return THandle<Publication>(new Publication({long_text}, Journal(4), "", 0, ""));
    }
  };
  fail_every_allocation(
      [] {
        return CrystalStructureDeferredDatabaseEntry(
            THandle<CrystalStructureDatabaseEntryDataSource>(new Source));
      },
      [](const auto& entry) { static_cast<void>(entry.publication()); },
      [](const auto& entry) { ASSERT_EQ(entry.publication()->authors.size(), 1U); });
}

TEST(OutOfMemorySearches, WithOrdinaryExpressionsNeedNone) {
  for (const std::string pattern : {"VORN\\s(\\d+)", "IUC(r|R)\\s(\\w+)", "\\d+[A-Z]{0,1}", "\\d+/\\d+",
                                    "^\\s*([A-Z]{6}[0-9]{0,2})\\s*$"}) {
    const Regex expression(pattern);
    const std::string text = " ABCDEF01 ";
    RegexResults results;
    const heap::FailAllocation fault(0, heap::Failing::from_then_on);
    EXPECT_NO_THROW(expression.search(text, results, 0)) << pattern;
  }
}

TEST(OutOfMemorySearches, OfIdentifiersKeepThoseThatWereThere) {
  const DatabaseCrossReference reference(DatabaseCrossReference::isomer,
                                         "of [ABCDEF01], [ABCDEF], [X1234567]");
  const auto one = [] { return std::vector<DatabaseEntryIdentifier>{long_identifier()}; };
  fail_every_allocation(
      one, [&](auto& found) { reference.identifiers(found); },
      [](const auto& found) {
        ASSERT_GE(found.size(), 1U);
        ASSERT_EQ(found[0].text(), long_text);
      });
}

TEST(OutOfMemorySearches, OfDepositionNumbersLeakNothing) {
  DepositionInfo info;
  info.set_text(DepositionInfo::archive, "12345678901234567890A 678901234567890123456789");
  const auto none = [] { return std::vector<std::string>(); };
  fail_every_allocation(
      none, [&](auto& found) { info.deposition_numbers(DepositionInfo::archive, found); },
      [](const auto& found) { ASSERT_LE(found.size(), 2U); });
}

}  // namespace
