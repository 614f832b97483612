#include <gtest/gtest.h>
#include <stores/engines/entry_numbers.h>

#include <random>
#include <set>
#include <vector>

namespace {

NumberBlock block_of(const std::set<int>& places) {
  NumberBlock block;
  for (const int place : places) block.insert(place);
  return block;
}

std::vector<int> places_of(const NumberBlock& block) {
  std::vector<int> places;
  block.for_each([&](int place) { places.push_back(place); });
  return places;
}

TEST(NumberBlock, IsTwoBytesForEachOfFewNumbers) {
  EXPECT_EQ(NumberBlock().packed(), "");
  EXPECT_EQ(block_of({0, 3, 8191}).packed(), std::string("\x00\x00\x03\x00\xFF\x1F", 6));
}

TEST(NumberBlock, IsABitForEachPlaceWhereThereAreMany) {
  std::set<int> places = {8191};
  for (int place = 0; place < 511; ++place) places.insert(place);
  const std::string bytes = block_of(places).packed();
  ASSERT_EQ(bytes.size(), 1024U);
  EXPECT_EQ(bytes.substr(0, 2), "\xFF\xFF");
  EXPECT_EQ(bytes[63], '\x7F');
  EXPECT_EQ(bytes[1023], '\x80');
}

TEST(NumberBlock, IsReadBackWhateverIsInIt) {
  std::mt19937 engine(1);
  for (const unsigned int one_in : {2U, 15U, 16U, 17U, 1000U}) {
    std::set<int> places;
    for (int place = 0; place < NumberBlock::size; ++place)
      if (engine() % one_in == 0) places.insert(place);
    NumberBlock read;
    ASSERT_TRUE(read.unpack(block_of(places).packed()));
    EXPECT_EQ(places_of(read), std::vector<int>(places.begin(), places.end()));
    EXPECT_EQ(read.count(), static_cast<int>(places.size()));
  }
}

TEST(NumberBlock, TakesNoBytesThatWereNeverPacked) {
  const struct {
    std::string bytes;
    const char* reason;
  } cases[] = {{"\x01", "half a number"},
               {std::string("\x03\x00\x03\x00", 4), "a number twice"},
               {std::string("\x03\x00\x02\x00", 4), "numbers that are not in order"},
               {std::string("\x00\x20", 2), "a number beyond the block"},
               {std::string(1026, '\0'), "more than all bits"}};
  for (const auto& each : cases) {
    NumberBlock block = block_of({1});
    EXPECT_FALSE(block.unpack(each.bytes)) << each.reason;
    EXPECT_EQ(block.count(), 0) << each.reason;
  }
}

TEST(NumberBlock, KeepsWhatIsInAnotherToo) {
  NumberBlock block = block_of({1, 64, 700, 8000});
  block.keep_only(block_of({0, 64, 8000}));
  EXPECT_EQ(places_of(block), (std::vector<int>{64, 8000}));
  block.erase(64);
  EXPECT_FALSE(block.has(64));
  EXPECT_TRUE(block.has(8000));
}

}  // namespace
