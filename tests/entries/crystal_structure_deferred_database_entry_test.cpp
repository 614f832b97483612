#include <database_entry/entries/crystal_structure_deferred_database_entry.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <type_traits>

#include "support/sample_entry.h"

namespace {

using Entry = CrystalStructureDeferredDatabaseEntry;
using Source = CrystalStructureDatabaseEntryDataSource;

static_assert(!std::is_default_constructible_v<Entry>);

// Supplies the components of an entry, counts how often each is asked for, and can be made to fail.
class CountingSource : public Source {
 public:
  explicit CountingSource(const CrystalStructureImmediateDatabaseEntry& supplied) : supplied_(supplied) {}

  DatabaseEntryIdentifier identifier() const override { return asked("identifier"), supplied_.identifier(); }
  THandle<CrystalMaker> crystal_maker() const override {
    return asked("crystal maker"), supplied_.crystal_maker();
  }
  THandle<ExperimentalInfo> experimental_info() const override {
    return asked("experimental info"), supplied_.experimental_info();
  }
  THandle<Cell> cell() const override { return asked("cell"), supplied_.cell(); }
  THandle<EditorsInfo> editors_info() const override {
    return asked("editors info"), supplied_.editors_info();
  }
  THandle<ChemicalInfo> chemical_info() const override {
    return asked("chemical info"), supplied_.chemical_info();
  }
  THandle<CrystalInfo> crystal_info() const override {
    return asked("crystal info"), supplied_.crystal_info();
  }
  THandle<Publication> publication() const override { return asked("publication"), supplied_.publication(); }
  THandle<ChemicalDiagram> chemical_diagram() const override {
    return asked("chemical diagram"), supplied_.chemical_diagram();
  }
  THandle<ConnectivityInfo> connectivity_info() const override {
    return asked("connectivity info"), supplied_.connectivity_info();
  }
  THandle<CrystalDiagramMatch> crystal_diagram_match() const override {
    return asked("crystal diagram match"), supplied_.crystal_diagram_match();
  }
  THandle<ConnectivityDiagramMatch> connectivity_diagram_match() const override {
    return asked("connectivity diagram match"), supplied_.connectivity_diagram_match();
  }
  THandle<CrystalConnectivityMatch> crystal_connectivity_match() const override {
    return asked("crystal connectivity match"), supplied_.crystal_connectivity_match();
  }
  THandle<CrossReferenceInfo> cross_reference_info() const override {
    return asked("cross reference info"), supplied_.cross_reference_info();
  }
  THandle<DepositionInfo> deposition_info() const override {
    return asked("deposition info"), supplied_.deposition_info();
  }
  THandle<DisorderSelectors> disorder_selector() const override {
    return asked("disorder selector"), supplied_.disorder_selector();
  }
  THandle<PublishedGeometry> published_geometry() const override {
    return asked("published geometry"), supplied_.published_geometry();
  }

  mutable std::map<std::string, int> times;
  mutable std::vector<std::string> order;
  // Called before each answer with the number of times this component was asked for.
  std::function<void(int)> before_answer = [](int) {};

 private:
  void asked(const char* name) const {
    order.emplace_back(name);
    before_answer(++times[name]);
  }

  CrystalStructureImmediateDatabaseEntry supplied_;
};

// An entry over a counting source, which stays in reach.
struct Deferred {
  explicit Deferred(const CrystalStructureImmediateDatabaseEntry& supplied)
      : source(new CountingSource(supplied)), entry(THandle<Source>(source)) {}
  CountingSource* source;
  Entry entry;
};

TEST(DeferredEntry, NeedsASource) {
  EXPECT_THROW(Entry{THandle<Source>()}, NullHandleError);
}

TEST(DeferredEntry, AsksForItsIdentifierOnceAndForNothingElse) {
  const Deferred deferred(sample_entry());
  EXPECT_EQ(deferred.entry.identifier(), DatabaseEntryIdentifier("ABCDEF"));
  EXPECT_EQ(deferred.entry.identifier(), DatabaseEntryIdentifier("ABCDEF"));
  EXPECT_EQ(deferred.source->times, (std::map<std::string, int>{{"identifier", 1}}));
}

TEST(DeferredEntry, TakesANewIdentifierWithoutTheSource) {
  Deferred deferred(sample_entry());
  deferred.entry.set_identifier(DatabaseEntryIdentifier("GHIJKL"));
  EXPECT_EQ(deferred.entry.identifier(), DatabaseEntryIdentifier("GHIJKL"));
  EXPECT_EQ(deferred.source->times["identifier"], 1);
}

TEST(DeferredEntry, AsksForEachComponentOnceAndSharesIt) {
  const CrystalStructureImmediateDatabaseEntry supplied = sample_entry();
  const Deferred deferred(supplied);
  for_each_component(
      [&](auto component) {
        const auto first = component.get(deferred.entry);
        EXPECT_FALSE(component.get(deferred.entry) != first) << component.label;
        EXPECT_EQ(first, component.get(supplied)) << component.label;
        EXPECT_EQ(deferred.source->times[component.label], 1) << component.label;
        EXPECT_EQ(first.use_count(), 4)
            << component.label;  // supplied, the source's copy, the entry's and this one
      });
}

TEST(DeferredEntry, KeepsANullAnswerLikeAnyOther) {
  const Deferred deferred(empty_entry());
  for_each_component([&](auto component) {
    EXPECT_TRUE(component.get(deferred.entry).is_null()) << component.label;
    EXPECT_TRUE(component.get(deferred.entry).is_null()) << component.label;
    EXPECT_EQ(deferred.source->times[component.label], 1) << component.label;
  });
}

TEST(DeferredEntry, NeverAsksForWhatWasSet) {
  const CrystalStructureImmediateDatabaseEntry other = sample_entry();
  for_each_setter([&](auto component) {
    Deferred deferred(sample_entry());
    const auto next = component.get(other);
    component.set(deferred.entry, next);
    EXPECT_EQ(component.get(deferred.entry), next) << component.label;
    EXPECT_EQ(deferred.source->times[component.label], 0) << component.label;
  });
}

TEST(DeferredEntry, TakesAComponentInPlaceOfTheOneThatWasFetched) {
  const CrystalStructureImmediateDatabaseEntry other = sample_entry();
  for_each_setter([&](auto component) {
    Deferred deferred(sample_entry());
    EXPECT_NE(component.get(deferred.entry), component.get(other)) << component.label;
    component.set(deferred.entry, component.get(other));
    EXPECT_EQ(component.get(deferred.entry), component.get(other)) << component.label;
    EXPECT_EQ(deferred.source->times[component.label], 1) << component.label;
  });
}

TEST(DeferredEntry, StaysWithoutAComponentThatWasSetToNull) {
  for_each_setter([&](auto component) {
    Deferred deferred(sample_entry());
    component.set(deferred.entry, {});
    EXPECT_TRUE(component.get(deferred.entry).is_null()) << component.label;
    EXPECT_EQ(deferred.source->times[component.label], 0) << component.label;
  });
}

TEST(DeferredEntry, AsksAgainAfterTheSourceThrewWhateverItThrew) {
  const std::function<void()> failures[] = {[] { throw std::runtime_error("no connection"); },
                                            [] { throw 7; }};
  for (const auto& fail : failures) {
    Deferred deferred(sample_entry());
    deferred.source->before_answer = [&](int time) {
      if (time == 1) fail();
    };
    for_each_component([&](auto component) {
      EXPECT_ANY_THROW(static_cast<void>(component.get(deferred.entry))) << component.label;
      EXPECT_FALSE(component.get(deferred.entry).is_null()) << component.label;
      EXPECT_FALSE(component.get(deferred.entry).is_null()) << component.label;
      EXPECT_EQ(deferred.source->times[component.label], 2) << component.label;
    });
  }
}

TEST(DeferredEntry, PassesOnWhatTheSourceThrowsUnchanged) {
  Deferred deferred(sample_entry());
  deferred.source->before_answer = [](int) { throw 7; };
  try {
    static_cast<void>(deferred.entry.publication());
    ADD_FAILURE() << "nothing was thrown";
  } catch (int thrown) {
    EXPECT_EQ(thrown, 7);
  }
}

TEST(DeferredEntry, KeepsWhatWasFetchedAndNotWhatTheSourceSetMeanwhile) {
  const CrystalStructureImmediateDatabaseEntry supplied = sample_entry();
  const CrystalStructureImmediateDatabaseEntry other = sample_entry();
  for_each_setter([&](auto component) {
    Deferred deferred(supplied);
    deferred.source->before_answer = [&](int) { component.set(deferred.entry, component.get(other)); };
    EXPECT_EQ(component.get(deferred.entry), component.get(supplied)) << component.name;
    EXPECT_EQ(component.get(deferred.entry), component.get(supplied)) << component.name;
    EXPECT_EQ(deferred.source->times[component.label], 1) << component.name;
  });
}

TEST(DeferredEntry, KeepsANullAnswerAndNotWhatTheSourceSetMeanwhile) {
  const CrystalStructureImmediateDatabaseEntry other = sample_entry();
  for_each_setter([&](auto component) {
    Deferred deferred(empty_entry());
    deferred.source->before_answer = [&](int) { component.set(deferred.entry, component.get(other)); };
    EXPECT_TRUE(component.get(deferred.entry).is_null()) << component.name;
    EXPECT_TRUE(component.get(deferred.entry).is_null()) << component.name;
  });
}

TEST(DeferredEntry, KeepsWhatTheSourceSetBeforeItFailed) {
  const CrystalStructureImmediateDatabaseEntry other = sample_entry();
  for_each_setter([&](auto component) {
    Deferred deferred(sample_entry());
    deferred.source->before_answer = [&](int) {
      component.set(deferred.entry, component.get(other));
      throw 7;
    };
    EXPECT_THROW(static_cast<void>(component.get(deferred.entry)), int) << component.name;
    EXPECT_EQ(component.get(deferred.entry), component.get(other)) << component.name;
    EXPECT_EQ(deferred.source->times[component.label], 1) << component.name;
  });
}

TEST(DeferredEntry, AsksTheSourceAgainWhileItIsStillAnswering) {
  const CrystalStructureImmediateDatabaseEntry supplied = sample_entry();
  for_each_component([&](auto component) {
    const Deferred deferred(supplied);
    deferred.source->before_answer = [&](int time) {
      if (time > 1) return;
      EXPECT_EQ(component.get(deferred.entry), component.get(supplied)) << component.name;
    };
    EXPECT_EQ(component.get(deferred.entry), component.get(supplied)) << component.name;
    EXPECT_EQ(deferred.source->times[component.label], 2) << component.name;
  });
}

TEST(DeferredEntry, IsNotMadeWhenTheSourceHasNoIdentifierToGive) {
  auto* const source = new CountingSource(sample_entry());
  const THandle<Source> handle(source);
  source->before_answer = [](int) { throw 7; };
  EXPECT_THROW(Entry{handle}, int);
  EXPECT_EQ(handle.use_count(), 1);
}

TEST(DeferredEntry, KeepsItsSourceAlive) {
  const THandle<Source> source(new CountingSource(sample_entry()));
  {
    const Entry entry(source);
    EXPECT_EQ(source.use_count(), 2);
  }
  EXPECT_EQ(source.use_count(), 1);
}

TEST(DeferredEntry, OverTheBaseClassAlonePrintsNothingButZeroHandles) {
  EXPECT_EQ(printed(Entry(THandle<Source>(new Source))), empty_text);
}

TEST(DeferredEntry, PrintsWhatTheImmediateEntryPrintsAndAsksForJustThat) {
  const Deferred deferred(sample_entry());
  EXPECT_EQ(printed(deferred.entry), printed(sample_entry()));
  EXPECT_EQ(printed(deferred.entry), sample_text);
  EXPECT_EQ(deferred.source->times.size(), 11U);
  for (const auto& [name, times] : deferred.source->times) EXPECT_EQ(times, 1) << name;
}

TEST(DeferredEntry, AsksForItsComponentsInTheOrderOfItsSummary) {
  const Deferred deferred(sample_entry());
  printed(deferred.entry);
  EXPECT_EQ(deferred.source->order,
            (std::vector<std::string>{"identifier", "crystal maker", "publication", "experimental info",
                                      "editors info", "chemical info", "crystal info", "chemical diagram",
                                      "connectivity info", "cross reference info", "deposition info"}));
}

}  // namespace
