// Lists take the memory of their elements and no more: their room is set aside once, when their length is
// known.
#include <database_entry/database_entry.h>
#include <gtest/gtest.h>
#include <reliability/support/heap.h>

#include "support/bytes.h"

namespace {

// 9 elements: a list that grows by doubling would have room for 16.
constexpr int count = 9;

// The bytes that a list with room for just `count` elements takes.
template <class Element>
std::size_t bytes_of_list() {
  const std::size_t before = heap::live_bytes();
  std::vector<Element> list;
  list.reserve(count);
  return heap::live_bytes() - before;
}

enum Digit : std::int32_t {};

TEST(ListMemory, OfAnEnumTextMappingIsSetAsideOnce) {
  using Mapping = EnumTextMapping<Digit>;
  std::vector<Mapping::Initialiser> table;
  const char* const texts[count] = {"1", "2", "3", "4", "5", "6", "7", "8", "9"};
  for (int index = 0; index < count; ++index) table.push_back({static_cast<Digit>(index), texts[index]});
  const std::size_t before = heap::live_bytes();
  const Mapping mapping(table.data(), count);
  EXPECT_EQ(heap::live_bytes() - before, (bytes_of_list<std::pair<Digit, std::string>>()));
}

template <class Record>
Record read_as(const std::string& stored) {
  Record record;
  read_from(stored, [&](Archive& archive) { record.read(archive); });
  return record;
}

TEST(ListMemory, OfClassifiersAndSynonymsIsThatOfTheirCount) {
  ChemicalInfo info;
  info.classifiers.resize(count, ChemicalClassification(ChemicalClassification::terpene));
  info.synonyms.resize(count);
  const auto back = read_as<ChemicalInfo>(written([&](Archive& archive) { info.write(archive); }));
  EXPECT_EQ(back.classifiers.capacity(), std::size_t{count});
  EXPECT_EQ(back.synonyms.capacity(), std::size_t{count});
}

TEST(ListMemory, OfAuthorsIsThatOfTheirCount) {
  Publication publication;
  publication.authors.resize(count);
  const auto back = read_as<Publication>(written([&](Archive& archive) { publication.write(archive); }));
  EXPECT_EQ(back.authors.capacity(), std::size_t{count});
}

TEST(ListMemory, OfDepositionsIsThatOfTheirCount) {
  std::string stored = int32(count);
  for (int index = 0; index < count; ++index) stored += bytes(int32(index), text("x"));
  const File file = file_with(stored);
  Archive archive(file.get());
  DepositionInfo info;
  const std::size_t before = heap::live_bytes();
  info.read(archive);
  EXPECT_EQ(heap::live_bytes() - before, bytes_of_list<DepositionInfo::Deposition>());
}

TEST(ListMemory, OfAtomsIsThatOfTheirCount) {
  const CrystalMaker maker(THandle<Cell>::make(), std::vector<THandle<Atom>>(count, THandle<Atom>::make()));
  const auto back = read_as<CrystalMaker>(written([&](Archive& archive) { maker.write(archive); }));
  EXPECT_EQ(back.atoms().capacity(), std::size_t{count});
}

TEST(ListMemory, OfConnectivityAtomsIsThatOfTheirCount) {
  Connectivity connectivity;
  connectivity.atoms.resize(count, THandle<ConnectivityAtom>::make());
  const auto back = read_as<Connectivity>(written([&](Archive& archive) { connectivity.write(archive); }));
  EXPECT_EQ(back.atoms.capacity(), std::size_t{count});
}

}  // namespace
