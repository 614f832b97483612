#include <database_entry/entries/chemical_connectivity_database_entry.h>
#include <gtest/gtest.h>

#include <type_traits>

#include "support/all_bytes.h"

namespace {

using Entry = ChemicalConnectivityDatabaseEntry;

static_assert(!std::is_polymorphic_v<Entry>);

Entry named(const std::string& name) {
  return Entry(DatabaseEntryIdentifier("OLD"), name, THandle<Connectivity>(new Connectivity));
}

TEST(ConnectivityEntry, IsEmptyByDefault) {
  const Entry entry;
  EXPECT_EQ(entry.identifier, DatabaseEntryIdentifier());
  EXPECT_EQ(entry.name, "");
  EXPECT_TRUE(entry.connectivity.is_null());
}

TEST(ConnectivityEntry, TakesIdentifierAndNameAsTheyAreAndSharesTheConnectivity) {
  const THandle<Connectivity> connectivity(new Connectivity);
  const Entry entry(DatabaseEntryIdentifier("12.5 benzene.qdx"), "a name", connectivity);
  EXPECT_EQ(entry.identifier, DatabaseEntryIdentifier("12.5 benzene.qdx"));
  EXPECT_EQ(entry.name, "a name");
  EXPECT_EQ(entry.connectivity, connectivity);
  EXPECT_EQ(connectivity.use_count(), 2);
}

TEST(ConnectivityEntry, TakesTheFileNameOfAQueryApart) {
  const struct {
    std::string text, identifier, name;
    const char* reason;
  } cases[] = {
      {"12.5 benzene.qdx", "12.5", "benzene", "number and name"},
      {"7 a.b.qdx", "7", "a.b", "the name may hold dots"},
      {"7 a.qdx.qdx", "7", "a.qdx", "the last .qdx ends the name"},
      {"1.2.3\t \n2-(a),b.qdx", "1.2.3", "2-(a),b", "any white space; hyphen, brackets and comma"},
      {"09 AZaz09.qdx", "09", "AZaz09", "the first and the last of digits and letters, with a name"},
      {"09AZaz.qdx", "09AZaz", "old", "the same without a name"},
      {"5 x.qdx.bak", "5", "x", "what follows .qdx is ignored"},
      {"5 x_y.qdx", "5 x_y.qdx", "old", "no underscore in a name"},
      {"5 xXqdx", "5 xXqdx", "old", "after a name the dot is a dot"},
      {" 5 x.qdx", " 5 x.qdx", "old", "nothing in front of the number"},
      {"123abc.qdx", "123abc", "old", "digits and letters, no name"},
      {"123abcXqdx", "123abc", "old", "any character before qdx"},
      {"1.2abc.qdx and more", "1.2abc", "old", "what follows qdx is ignored"},
      {"123abc.qdy", "123abc.qdy", "old", "another ending"},
      {"123.qdx", "123.qdx", "old", "letters are needed"},
      {"abc.qdx", "abc.qdx", "old", "digits are needed"},
      {"ABC01", "ABC01", "old", "an identifier"},
      {"", "", "old", "nothing at all"},
  };
  for (const auto& each : cases) {
    Entry entry = named("old");
    entry.set_identifier(DatabaseEntryIdentifier(each.text));
    EXPECT_EQ(entry.identifier, DatabaseEntryIdentifier(each.identifier)) << each.reason;
    EXPECT_EQ(entry.name, each.name) << each.reason;
  }
}

// "5 x" + byte + ".qdx": the places of a file name that take more than one byte.
struct Place {
  const char* before;
  const char* after;
  std::string bytes;
  const char* reason;
};

const Place places[] = {
    {"", "5 x.qdx", ascii::digits + ".", "the number in front of a name begins"},
    {"5", "6 x.qdx", ascii::digits + ".", "and goes on"},
    {"5", "x.qdx", ascii::white_space, "white space between number and name"},
    {"5 x", "y.qdx", ascii::letters + ascii::digits + "-(),.", "the name"},
    {"5 x", "qdx", ".", "a dot in front of the ending"},
    {"5 x.", "dx", "q", "the ending"},
};

TEST(ConnectivityEntry, TakesOnlyAsciiAtEachPlaceOfAFileName) {
  for (const Place& place : places) {
    const auto is_taken_apart = [&](char byte) {
      Entry entry = named("old");
      entry.set_identifier(DatabaseEntryIdentifier(place.before + std::string(1, byte) + place.after));
      return entry.name != "old";
    };
    EXPECT_EQ(accepted(is_taken_apart), by_value(place.bytes)) << place.reason;
  }
}

const Place nameless_places[] = {
    {"", "5ab.qdx", ascii::digits + ".", "the number begins"},
    {"5", "b.qdx", ascii::digits + "." + ascii::letters, "number or letters"},
    {"5a", ".qdx", ascii::letters, "the letters"},
};

TEST(ConnectivityEntry, TakesOnlyAsciiAtEachPlaceOfAFileNameWithoutAName) {
  for (const Place& place : nameless_places) {
    const auto is_cut = [&](char byte) {
      Entry entry = named("old");
      const std::string text = place.before + std::string(1, byte) + place.after;
      entry.set_identifier(DatabaseEntryIdentifier(text));
      return entry.identifier.text() + ".qdx" == text;
    };
    EXPECT_EQ(accepted(is_cut), by_value(place.bytes)) << place.reason;
  }
}

TEST(ConnectivityEntry, TakesAnyByteButALineFeedBeforeTheEndingOfOne) {
  const auto is_cut = [](char byte) {
    Entry entry = named("old");
    entry.set_identifier(DatabaseEntryIdentifier("5a" + std::string(1, byte) + "qdx"));
    return entry.identifier.text() == "5a";
  };
  std::string expected = all_bytes();
  expected.erase(expected.find('\n'), 1);
  EXPECT_EQ(accepted(is_cut), expected);
}

TEST(ConnectivityEntry, KeepsATextWithANulWhole) {
  using namespace std::string_literals;
  const std::string text = "7\0a.qdx"s;
  Entry entry = named("old");
  entry.set_identifier(DatabaseEntryIdentifier(text));
  EXPECT_EQ(entry.identifier, DatabaseEntryIdentifier(text));
  EXPECT_EQ(entry.name, "old");
}

TEST(ConnectivityEntry, KeepsItsConnectivity) {
  Entry entry = named("old");
  const THandle<Connectivity> before = entry.connectivity;
  entry.set_identifier(DatabaseEntryIdentifier("7 a.qdx"));
  EXPECT_EQ(entry.connectivity, before);
}

TEST(ConnectivityEntry, TakesItsOwnIdentifierApart) {
  Entry entry(DatabaseEntryIdentifier("7 a.qdx"), "old", THandle<Connectivity>());
  entry.set_identifier(entry.identifier);
  EXPECT_EQ(entry.identifier, DatabaseEntryIdentifier("7"));
  EXPECT_EQ(entry.name, "a");
}

TEST(ConnectivityEntry, TakesAMillionDigitsInNoTime) {
  Entry entry = named("old");
  const DatabaseEntryIdentifier digits(std::string(1'000'000, '7'));
  entry.set_identifier(digits);
  EXPECT_EQ(entry.identifier, digits);
}

}  // namespace
