// A data source that throws, at the first or the second call of each of its operations: the exception comes
// through as it is, nothing else of the entry changes, and the next call is answered.
#include <database_entry/database_entry.h>
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>
#include <vector>

namespace {

using Source = CrystalStructureDatabaseEntryDataSource;
using Entry = CrystalStructureDeferredDatabaseEntry;

// Throws at call `failing_call` of any operation (the first is 0), and hands out new components otherwise.
class Unreliable : public Source {
 public:
  Unreliable(int& calls, int failing_call, const std::function<void()>& fail)
      : calls_(calls), failing_call_(failing_call), fail_(fail) {}

  DatabaseEntryIdentifier identifier() const override { return answer<DatabaseEntryIdentifier>(); }
  THandle<CrystalMaker> crystal_maker() const override { return made<CrystalMaker>(); }
  THandle<ExperimentalInfo> experimental_info() const override { return made<ExperimentalInfo>(); }
  THandle<Cell> cell() const override { return made<Cell>(); }
  THandle<EditorsInfo> editors_info() const override { return made<EditorsInfo>(); }
  THandle<ChemicalInfo> chemical_info() const override { return made<ChemicalInfo>(); }
  THandle<CrystalInfo> crystal_info() const override { return made<CrystalInfo>(); }
  THandle<Publication> publication() const override { return made<Publication>(); }
  THandle<ChemicalDiagram> chemical_diagram() const override { return made<ChemicalDiagram>(); }
  THandle<ConnectivityInfo> connectivity_info() const override { return made<ConnectivityInfo>(); }
  THandle<CrystalDiagramMatch> crystal_diagram_match() const override { return made<CrystalDiagramMatch>(); }
  THandle<ConnectivityDiagramMatch> connectivity_diagram_match() const override {
    return made<ConnectivityDiagramMatch>();
  }
  THandle<CrystalConnectivityMatch> crystal_connectivity_match() const override {
    return made<CrystalConnectivityMatch>();
  }
  THandle<CrossReferenceInfo> cross_reference_info() const override { return made<CrossReferenceInfo>(); }
  THandle<DepositionInfo> deposition_info() const override { return made<DepositionInfo>(); }
  THandle<DisorderSelectors> disorder_selector() const override { return made<DisorderSelectors>(); }
  THandle<PublishedGeometry> published_geometry() const override { return made<PublishedGeometry>(); }

 private:
  template <class T>
  T answer() const {
    if (calls_++ == failing_call_) fail_();
    return T();
  }
  template <class T>
  THandle<T> made() const {
    answer<int>();
    return THandle<T>(new T);
  }

  int& calls_;
  int failing_call_;
  const std::function<void()>& fail_;
};

// The exceptions of a source need not come from the standard library.
struct Failure {
  const char* name;
  std::function<void()> fail;
  std::function<void(const std::function<void()>&)> expect;
};

template <class E>
Failure failure(const char* name, const E& thrown) {
  return {name, [thrown] { throw thrown; },
          [](const std::function<void()>& action) { EXPECT_THROW(action(), E); }};
}

const Failure failures[] = {
    failure("one of the library's own", std::runtime_error("the back end is down")),
    failure("memory", std::bad_alloc()),
    failure("a number", 7),
};

// Each gives the address of the component, which is the same for as long as it is kept.
struct Accessor {
  const char* name;
  std::function<const void*(const Entry&)> component;
};

std::vector<Accessor> all_accessors() {
  std::vector<Accessor> all;
  for_each_component([&](auto component) {
    all.push_back({component.name, [component](const Entry& entry) { return component.get(entry).get(); }});
  });
  return all;
}

const std::vector<Accessor> accessors = all_accessors();

THandle<Source> source_that_fails(int& calls, int failing_call, const std::function<void()>& fail) {
  return THandle<Source>(new Unreliable(calls, failing_call, fail));
}

// Call 0 of the source is that for the identifier.
TEST(UnreliableSource, AFailureOfAComponentPassesAndTheComponentIsAskedForAgain) {
  for (const Failure& failure : failures) {
    for (const Accessor& accessor : accessors) {
      int calls = 0;
      const Entry entry(source_that_fails(calls, 1, failure.fail));
      failure.expect([&] { accessor.component(entry); });
      const void* const component = accessor.component(entry);
      EXPECT_NE(component, nullptr) << accessor.name << ", " << failure.name;
      EXPECT_EQ(accessor.component(entry), component) << accessor.name << ", " << failure.name;
      EXPECT_EQ(calls, 3) << accessor.name << ", " << failure.name;
    }
  }
}

TEST(UnreliableSource, AFailureLeavesTheComponentsThatWereObtained) {
  for (const Failure& failure : failures) {
    for (const Accessor& first : accessors) {
      for (const Accessor& second : accessors) {
        if (&first == &second) continue;
        int calls = 0;
        const Entry entry(source_that_fails(calls, 2, failure.fail));
        const void* const obtained = first.component(entry);
        failure.expect([&] { second.component(entry); });
        EXPECT_EQ(first.component(entry), obtained) << first.name << ", " << second.name;
        EXPECT_EQ(calls, 3);
      }
    }
  }
}

TEST(UnreliableSource, AFailureOfTheIdentifierLeavesNoEntryAndLetsTheSourceGo) {
  for (const Failure& failure : failures) {
    int calls = 0;
    const THandle<Source> source = source_that_fails(calls, 0, failure.fail);
    failure.expect([&] { static_cast<void>(Entry(source)); });
    EXPECT_EQ(source.use_count(), 1) << failure.name;
    EXPECT_EQ(Entry(source).identifier(), DatabaseEntryIdentifier()) << failure.name;
  }
}

}  // namespace
