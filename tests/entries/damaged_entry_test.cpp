// An archived entry with every kind of damage: it ends as documented, and takes no more memory than it is
// worth.
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>

#include "support/damage.h"
#include "support/sample_entry.h"

namespace {

std::size_t live_bytes = 0;
std::size_t peak_bytes = 0;

void* counted(void* memory) {
  live_bytes += malloc_usable_size(memory);
  peak_bytes = std::max(peak_bytes, live_bytes);
  return memory;
}

}  // namespace

// Every allocation of this program is counted; arrays too. Not inlined, because g++ would then warn of a
// delete of what malloc() gave.
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return counted(std::malloc(size));
}
void* operator new(std::size_t size) {
  void* const memory = operator new(size, std::nothrow);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void operator delete(void* memory) noexcept {
  live_bytes -= malloc_usable_size(memory);
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept {
  operator delete(memory);
}
void operator delete[](void* memory) noexcept {
  operator delete(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  operator delete(memory);
}

namespace {

using Entry = CrystalStructureImmediateDatabaseEntry;

void read_entry(Entry& entry, const std::string& stored) {
  read_from(stored, [&](Archive& archive) { entry.read(archive); });
}

std::string with_int_at(std::string stored, std::size_t offset, int value) {
  return stored.replace(offset, 4, int32(value));
}

// The entry is read, or one of the two exceptions that reading documents ends it.
void expect_documented_end(const std::string& stored, const Damage& damage) {
  Entry entry = empty_entry();
  try {
    read_entry(entry, stored);
  } catch (const ArchiveError&) {
  } catch (const std::invalid_argument&) {
  } catch (...) {
    ADD_FAILURE() << "an undocumented exception: " << damage;
  }
}

// The offsets of all counts and lengths: where -1 is refused as negative.
std::vector<std::size_t> offsets_of_counts() {
  std::vector<std::size_t> offsets;
  for (std::size_t offset = 0; offset + 4 <= sample_bytes().size(); ++offset) {
    Entry entry = empty_entry();
    const std::string message =
        message_of<std::exception>([&] { read_entry(entry, with_int_at(sample_bytes(), offset, -1)); });
    const std::string place = " -1 at offset " + std::to_string(offset);
    if (message.ends_with(place) || message.find(place + " (") != std::string::npos)
      offsets.push_back(offset);
  }
  return offsets;
}

TEST(DamagedEntry, CutBeforeItsLastTextIsRefused) {
  const std::string stored = sample_bytes();
  const std::size_t last_text = stored.size() - std::string("VORN 7").size();
  for_every_truncation(stored.substr(0, last_text), [](const std::string& cut, const Damage& damage) {
    Entry entry = empty_entry();
    EXPECT_THROW(read_entry(entry, cut), ArchiveError) << damage;
  });
}

TEST(DamagedEntry, CutWithinItsLastTextHasTheBytesThatCame) {
  const std::string stored = sample_bytes();
  for (std::size_t missing = 1; missing <= 6; ++missing) {
    Entry entry = empty_entry();
    read_entry(entry, stored.substr(0, stored.size() - missing));
    EXPECT_EQ(entry.deposition_info()->text(DepositionInfo::vorn),
              std::string("VORN 7").substr(0, 6 - missing));
  }
}

TEST(DamagedEntry, WithBoundaryValuesAtAnyOffsetEndsAsDocumented) {
  for_boundary_values_everywhere(sample_bytes(), [](const std::string& stored, const Damage& damage) {
    expect_documented_end(stored, damage);
  });
}

// By item: 1 identifier; 4 maker with its atom; 1 cell; 6 publication; 5 experimental; 4 editors; 11
// chemical; 11 crystal; 6 connectivity; 2 cross-references; 2 depositions.
TEST(DamagedEntry, NamesEachOfItsNegativeCountsAndLengths) {
  EXPECT_EQ(offsets_of_counts().size(), 1U + 4U + 1U + 6U + 5U + 4U + 11U + 11U + 6U + 2U + 2U);
}

TEST(DamagedEntry, TakesLittleMemoryForCountsThatTheStreamDoesNotHold) {
  for (const std::size_t offset : offsets_of_counts()) {
    const std::string damaged = with_int_at(sample_bytes(), offset, std::numeric_limits<int>::max());
    const std::size_t live_before = live_bytes;
    peak_bytes = live_bytes;
    expect_documented_end(damaged, {"count", offset, std::numeric_limits<int>::max()});
    EXPECT_LE(peak_bytes - live_before, 32 * damaged.size() + 1024 * 1024) << offset;
    EXPECT_EQ(live_bytes, live_before) << offset;
  }
}

TEST(DamagedRecord, TakesLittleMemoryForElementsThatTwelveBytesDoNotHold) {
  const std::string twelve = bytes(int32(std::numeric_limits<int>::max()), int32(1), int32(1));
  const std::size_t live_before = live_bytes;
  peak_bytes = live_bytes;
  EXPECT_THROW(read_from(twelve, [](Archive& archive) { CrossReferenceInfo().read(archive); }), ArchiveError);
  EXPECT_THROW(read_from(twelve, [](Archive& archive) { DepositionInfo().read(archive); }), ArchiveError);
  EXPECT_LE(peak_bytes - live_before, 1024U * 1024U);
}

}  // namespace
