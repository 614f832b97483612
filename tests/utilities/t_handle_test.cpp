#include <gtest/gtest.h>
#include <utilities/t_handle.h>

#include <type_traits>
#include <vector>

#include "support/bytes.h"

namespace {

// Counts how many of its kind are alive.
struct Counted {
  explicit Counted(int& alive) : alive_(alive) { ++alive_; }
  Counted(const Counted&) = delete;
  virtual ~Counted() { --alive_; }
  int& alive_;
};
struct Derived : Counted {
  Derived(int& alive, bool& gone) : Counted(alive), gone_(gone) {}
  ~Derived() override { gone_ = true; }
  bool& gone_;
};

struct Node {
  THandle<Node> next;
};

TEST(THandle, OwnsACountAlsoWhenItIsNull) {
  const THandle<int> null;
  EXPECT_TRUE(null.is_null());
  EXPECT_EQ(null.get(), nullptr);
  EXPECT_EQ(null.use_count(), 1);
}

TEST(THandle, SharesItsTargetAndItsCountWithItsCopies) {
  const THandle<int> handle(new int(7));
  {
    const THandle<int> copy = handle;
    EXPECT_EQ(copy.get(), handle.get());
    EXPECT_EQ(handle.use_count(), 2);
  }
  EXPECT_EQ(handle.use_count(), 1);
}

TEST(THandle, CopiesOfANullHandleShareItsCountToo) {
  const THandle<int> null;
  const THandle<int> copy = null;
  EXPECT_EQ(null.use_count(), 2);
}

TEST(THandle, DestroysItsTargetWithTheLastHandle) {
  int alive = 0;
  {
    const THandle<Counted> first(new Counted(alive));
    const THandle<Counted> second = first;
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
}

TEST(THandle, DestroysThroughTheVirtualDestructor) {
  int alive = 0;
  bool derived_gone = false;
  { const THandle<Counted> handle(new Derived(alive, derived_gone)); }
  EXPECT_TRUE(derived_gone);
}

TEST(THandle, MakesAnObjectFromItsArguments) {
  int alive = 0;
  {
    const auto first = THandle<Counted>::make(alive);
    const THandle<Counted> second = first;
    EXPECT_EQ(&first->alive_, &alive);
    EXPECT_EQ(second.use_count(), 2);
    EXPECT_EQ(alive, 1);
  }
  EXPECT_EQ(alive, 0);
}

TEST(THandle, MakesADefaultObjectWithoutArguments) {
  EXPECT_EQ(*THandle<int>::make(), 0);
  EXPECT_TRUE(THandle<std::vector<int>>::make()->empty());
}

TEST(THandle, PassesOnWhatTheConstructorOfAMadeObjectThrows) {
  struct Thrower {
    Thrower() { throw 7; }
  };
  EXPECT_THROW(THandle<Thrower>::make(), int);
}

TEST(THandle, AMadeObjectMayMeetOneThatWasTakenOver) {
  int alive = 0;
  THandle<Counted> handle = THandle<Counted>::make(alive);
  handle = THandle<Counted>(new Counted(alive));
  EXPECT_EQ(alive, 1);
  handle = THandle<Counted>::make(alive);
  EXPECT_EQ(alive, 1);
}

TEST(THandle, AssignmentLetsGoOfTheOldTargetAndSharesTheNewOne) {
  int alive = 0;
  THandle<Counted> handle(new Counted(alive));
  const THandle<Counted> other(new Counted(alive));
  handle = other;
  EXPECT_EQ(alive, 1);
  EXPECT_EQ(handle.get(), other.get());
  EXPECT_EQ(other.use_count(), 2);
}

TEST(THandle, AssignmentOfTheSameTargetChangesNoCount) {
  THandle<int> handle(new int(1));
  const THandle<int> copy = handle;
  handle = copy;
  EXPECT_EQ(handle.use_count(), 2);
}

TEST(THandle, AssignmentOfNullToNullKeepsBothCounts) {
  THandle<int> null;
  const THandle<int> other;
  const THandle<int> other_copy = other;
  null = other;
  EXPECT_EQ(null.use_count(), 1);
  EXPECT_EQ(other.use_count(), 2);
}

TEST(THandle, AssignmentToItselfIsHarmless) {
  THandle<int> handle(new int(5));
  const THandle<int>& same = handle;
  handle = same;
  EXPECT_EQ(*handle, 5);
  EXPECT_EQ(handle.use_count(), 1);
}

TEST(THandle, MayBeAssignedFromInsideTheTargetThatGoes) {
  THandle<Node> list(new Node);
  list->next = THandle<Node>(new Node);
  const Node* const second = list->next.get();
  list = list->next;
  EXPECT_EQ(list.get(), second);
  EXPECT_EQ(list.use_count(), 1);
}

TEST(THandle, ThrowsWhenANullHandleIsDereferenced) {
  const THandle<Counted> null;
  EXPECT_EQ(message_of<NullHandleError>([&] { static_cast<void>(*null); }), "Null handle");
  EXPECT_EQ(message_of<NullHandleError>([&] { static_cast<void>(null->alive_); }), "Null handle");
  EXPECT_THROW(THandleCommon::null_handle_error(), std::logic_error);
}

TEST(THandle, ComparesTheObjectNotItsValue) {
  const THandle<int> one(new int(1));
  const THandle<int> equal_value(new int(1));
  const THandle<int> copy = one;
  EXPECT_TRUE(one != equal_value);
  EXPECT_FALSE(one == equal_value);
  EXPECT_TRUE(one == copy);
  EXPECT_FALSE(one != copy);
  EXPECT_TRUE(THandle<int>() == THandle<int>());
}

TEST(THandle, IsNeverMadeFromAPointerByAccident) {
  static_assert(!std::is_convertible_v<int*, THandle<int>>);
  static_assert(std::is_nothrow_copy_constructible_v<THandle<int>>);
  static_assert(sizeof(THandle<int>) == 2 * sizeof(void*));
  SUCCEED();
}

TEST(NullHandles, AreAtMostSixteenAtATime) {
  EXPECT_NO_THROW(NullHandles{16});
  EXPECT_THROW(NullHandles{17}, std::length_error);
}

TEST(NullHandles, OwnACountEach) {
  NullHandles nulls(2);
  const THandle<int> first = nulls.make<int>();
  const THandle<double> second = nulls.make<double>();
  const THandle<int> copy = first;
  EXPECT_TRUE(first.is_null());
  EXPECT_EQ(first.use_count(), 2);
  EXPECT_EQ(second.use_count(), 1);
}

TEST(NullHandles, OutliveTheirMakerAndOneAnother) {
  THandle<int> kept;
  const THandle<int> target(new int(7));
  {
    NullHandles nulls(3);  // one of which is never asked for
    THandle<int> gone = nulls.make<int>();
    THandle<int> last = nulls.make<int>();
    kept = target;  // equal targets are not assigned, so not from null to null
    kept = last;
    gone = target;
  }
  EXPECT_EQ(kept.use_count(), 1);
  EXPECT_TRUE(kept.is_null());
  EXPECT_EQ(target.use_count(), 1);
}

struct Pair {
  int first = 4;
  std::vector<int> second;
};

TEST(THandle, MakesADefaultObjectAsNewDoes) {
  EXPECT_EQ(THandle<Pair>::make()->first, 4);
  EXPECT_TRUE(THandle<Pair>::make()->second.empty());
  EXPECT_EQ(*THandle<int>::make(), 0);
}

}  // namespace
