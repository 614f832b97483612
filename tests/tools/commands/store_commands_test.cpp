// Stores behave as archives do, wherever a collection is taken.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/program.h"
#include "tools/temporary_folder.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

const std::string archive = SAMPLES_FOLDER "/cross_references.dbe";
const std::string one = contents_of_file(archive);

Outcome run(const std::vector<std::string>& arguments) {
  return Program(arguments).run();
}

std::string named(const std::string& identifier) {
  std::string other = one;
  return other.replace(other.find("ABCDEF01"), 8, identifier);
}

// A store with the entries of a file of two.
class Store : public testing::Test {
 protected:
  Store() {
    EXPECT_EQ(run({"init", store}).code, 0);
    EXPECT_EQ(run({"merge", two, "--into", store}).code, 0);
  }

  TemporaryFolder folder;
  std::string two = folder.with("two.dbe", one + named("ABCDEF02"));
  std::string store = folder.file("known.db");
};

TEST_F(Store, IsMadeByInitOnlyAndNeverOverAnything) {
  EXPECT_EQ(run({"merge", two, "--into", folder.file("nowhere.db")}).code, 4);
  EXPECT_EQ(folder.file_count(), 2U);
  const Outcome result = run({"init", two});
  EXPECT_EQ(result.code, 4);
  EXPECT_EQ(contents_of_file(two), one + named("ABCDEF02"));
}

struct SameAnswer {
  std::vector<std::string> before;  // the collection
  std::vector<std::string> after;
};

TEST_F(Store, AnswersAsTheArchiveDoes) {
  const std::vector<SameAnswer> questions = {
      {{"list"}, {}},
      {{"list"}, {"-c", "identifier,authors,year", "-f", "json"}},
      {{"show"}, {}},
      {{"show"}, {"ABCDEF02", "-f", "pretty"}},
      {{"related"}, {"ABCDEF01"}},
      {{"related"}, {"X1234567", "--reverse", "--depth", "2"}},
      {{"depositions"}, {"--number", "654321"}},
      {{"stats"}, {"--by", "journal"}},
      {{"stats"}, {"--by", "element"}},
      {{"stats"}, {"--by", "year"}},
      {{"stats"}, {"--by", "space-group"}},
      {{"stats"}, {"--by", "author"}},
  };
  for (const SameAnswer& question : questions) {
    const auto ask = [&](const std::string& collection) {
      std::vector<std::string> arguments = question.before;
      arguments.push_back(collection);
      arguments.insert(arguments.end(), question.after.begin(), question.after.end());
      return run(arguments);
    };
    const Outcome of_store = ask(store);
    EXPECT_EQ(of_store.code, 0) << of_store.messages;
    const Outcome of_archive = ask(two);
    EXPECT_EQ(of_store.out, of_archive.out);
    EXPECT_EQ(of_store.messages, of_archive.messages);
  }
}

TEST_F(Store, SaysOfHowManyEntriesItKnowsNothing) {
  const std::string json = folder.with("x.json", R"({"identifier":"x"})");
  EXPECT_EQ(run({"import", json, "--into", store}).code, 0);
  for (const char* const by : {"element", "year", "space-group", "author"}) {
    EXPECT_EQ(run({"stats", store, "--by", by}).messages, "dbentry: of 1 entry it is not known\n") << by;
  }
}

TEST_F(Store, IsComparedWithAnArchiveAndWithAnotherStore) {
  for (const auto& [first, second] :
       {std::pair(two, store), std::pair(store, two), std::pair(store, store)}) {
    const Outcome same = run({"diff", first, second});
    EXPECT_EQ(same.code, 0) << same.messages;
    EXPECT_EQ(same.out, "");
  }
}

TEST_F(Store, TakesAnEntryWithoutACellThatNoArchiveTakes) {
  const std::string json = folder.with("x.json", R"({"identifier":"x","cell":null})");
  const std::string other = folder.file("x.dbe");
  const Outcome refused = run({"import", json, "-o", other});
  EXPECT_EQ(refused.code, 1);
  EXPECT_THAT(refused.messages,
              HasSubstr("error: data_x: its cell is null, and an archive has all ten components\n"));
  EXPECT_EQ(run({"import", json, "--into", store}).code, 0);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"extract", store, "x", "-o", other},
        std::vector<std::string>{"export", store, "--to", "archive", "-o", other},
        std::vector<std::string>{"verify", store, "-o", other}}) {
    const Outcome result = run(arguments);
    EXPECT_EQ(result.code, 1) << arguments[0];
    EXPECT_THAT(result.messages, HasSubstr("entry x: its cell is null")) << arguments[0];
  }
  EXPECT_EQ(run({"verify", store}).code, 0);
}

TEST_F(Store, DiffersFromAnArchiveInFieldsAndEntries) {
  const std::string other = folder.file("changed.dbe");
  EXPECT_EQ(run({"extract", store, "ABCDEF01", "-o", other}).code, 0);
  EXPECT_EQ(run({"set", other, "ABCDEF01", "year=1980"}).code, 0);
  const Outcome other_way = run({"diff", other, store});
  EXPECT_EQ(other_way.out,
            "ABCDEF01\tdiffers\tpublication.year\t1980\t1979\nABCDEF02\tonly in the second\t\t\t\n");
  const Outcome result = run({"diff", store, other});
  EXPECT_EQ(result.code, 1) << result.messages;
  EXPECT_EQ(result.out,
            "ABCDEF01\tdiffers\tpublication.year\t1979\t1980\nABCDEF02\tonly in the first\t\t\t\n");
}

TEST_F(Store, NamesTheNearestIdentifier) {
  const Outcome result = run({"show", store, "ABCDEF10"});
  EXPECT_EQ(result.code, 3);
  EXPECT_THAT(result.messages, HasSubstr("unknown identifier 'ABCDEF10'; did you mean 'ABCDEF"));
}

TEST_F(Store, TakesTheSameEntryOnceAndRefusesAnother) {
  EXPECT_THAT(run({"merge", two, "--into", store}).out, StartsWith("0 entries added, 2 the same again"));
  std::string other = one;
  other.replace(other.find("C6 H12"), 6, "C6 H14");
  const std::string changed = folder.with("changed.dbe", other);
  const Outcome refused = run({"merge", changed, "--into", store});
  EXPECT_EQ(refused.code, 1);
  EXPECT_THAT(refused.messages, HasSubstr("another entry ABCDEF01 was there before"));
  EXPECT_EQ(run({"merge", changed, "--into", store, "--on-duplicate", "replace"}).code, 0);
  EXPECT_THAT(run({"list", store, "-c", "formula"}).out, StartsWith("C6 H14 O6\n"));
}

TEST_F(Store, GivesBackTheBytesOfItsArchive) {
  EXPECT_EQ(run({"merge", store, "-o", "-"}).out, contents_of_file(two));
  EXPECT_EQ(run({"extract", store, "ABCDEF02", "-o", "-"}).out, named("ABCDEF02"));
}

TEST_F(Store, LosesTheEntriesThatAreRemoved) {
  EXPECT_EQ(run({"remove", store, "ABCDEF01", "NOBODY"}).code, 3);
  EXPECT_EQ(run({"remove", store, "ABCDEF01"}).code, 0);
  EXPECT_EQ(run({"list", store, "-c", "identifier"}).out, "ABCDEF02\n");
}

TEST_F(Store, IsVerifiedWithTheDigestOfItsArchive) {
  const Outcome result = run({"verify", store});
  EXPECT_EQ(result.code, 0) << result.messages;
  const std::string of_archive = run({"verify", two}).out;
  EXPECT_THAT(result.out, HasSubstr(of_archive.substr(of_archive.find("SHA-256"))));
  EXPECT_EQ(run({"reindex", store}).code, 0);
  EXPECT_EQ(run({"reindex", two}).code, 2);
}

TEST_F(Store, MayNotBeOneOfItsOwnInputs) {
  EXPECT_EQ(run({"merge", store, "--into", store}).code, 2);
  EXPECT_THAT(run({"merge", store, "--into", two}).messages,
              HasSubstr("a stored archive takes no more entries"));
}

}  // namespace
