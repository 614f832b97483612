// Every way of damaging a full example of everything that is archived: each read ends in an exception of a
// documented type or in an object that writes and reads back, leaks nothing, and takes memory in proportion
// to the stream.
#include <database_entry/records/journal.h>
#include <gtest/gtest.h>
#include <reliability/support/heap.h>
#include <reliability/support/subject_test.h>
#include <support/damage.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

// What any stream may cost at most.
constexpr std::size_t heap_per_byte = 32;
constexpr std::size_t heap_base = 1 << 20;

class Damaged : public SubjectTest {
 protected:
  static void examine(const std::string& stream, const Damage& damage) {
    const std::size_t live = heap::live_bytes();
    heap::start_peak();
    const std::string problem = problem_with(GetParam(), stream);
    const std::size_t peak = heap::peak_bytes();
    ASSERT_EQ(problem, "") << damage;
    ASSERT_LE(peak, heap_per_byte * stream.size() + heap_base) << damage;
    ASSERT_EQ(heap::live_bytes(), live) << damage;
  }
};

TEST(FalseLength, CostsRoomForTheFirst64KiB) {
  const std::string stream = bytes(int32(std::numeric_limits<int>::max()), "a name");
  Journal journal(1);
  heap::start_peak();
  EXPECT_THROW(read_stream(journal, stream), ArchiveError);
  EXPECT_GE(heap::peak_bytes(), 64U * 1024);
  EXPECT_LE(heap::peak_bytes(), 64U * 1024 + 64);
}

TEST_P(Damaged, TheUndamagedStreamReadsBack) {
  examine(whole(), {"nothing", 0, 0});
}

TEST_P(Damaged, EveryTruncationEndsInADocumentedState) {
  for_every_truncation(whole(), examine);
}

TEST_P(Damaged, EveryByteTakesEveryValue) {
  for_every_byte_value(whole(), examine);
}

// Those whose bytes hold a count, a length or an enumeration; a date, say, has none.
class DamagedPlaces : public Damaged {};

TEST_P(DamagedPlaces, EveryCountLengthAndEnumerationTakesTwelveBoundaryValues) {
  for_every_boundary_value(GetParam().layout, examine);
}

// What may follow a size that lies, for a megabyte: bytes, empty texts, pairs of a member and an empty text.
const std::string followers[] = {"x", int32(0), int32(1), bytes(int32(1), int32(0)), bytes(int32(1), "x")};

class DamagedSizes : public Damaged {};

TEST_P(DamagedSizes, NoSizeThatLiesMakesALongStreamCostly) {
  for (const Place& place : GetParam().layout.places()) {
    if (!place.is_size) continue;
    for (const std::string& follower : followers) {
      std::string stream = whole().substr(0, place.offset) + int32(std::numeric_limits<std::int32_t>::max());
      while (stream.size() < heap_base) stream += follower;
      examine(stream, {place.name.c_str(), place.offset, follower.back()});
    }
  }
}

// The subjects with a place that `wanted` takes.
template <class Wanted>
std::vector<Subject> subjects_with(const Wanted& wanted) {
  std::vector<Subject> all = subjects();
  std::erase_if(
      all, [&](const Subject& subject) { return std::ranges::none_of(subject.layout.places(), wanted); });
  return all;
}

INSTANTIATE_TEST_SUITE_P(Everything, Damaged, testing::ValuesIn(subjects()),
                         testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Everything, DamagedPlaces,
                         testing::ValuesIn(subjects_with([](const Place&) { return true; })),
                         testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Everything, DamagedSizes,
                         testing::ValuesIn(subjects_with([](const Place& place) { return place.is_size; })),
                         testing::PrintToStringParamName());

}  // namespace
