// A text may hold a NUL, or any other byte: it is printed, archived and compared whole, in every field.
#include <database_entry/database_entry.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/bytes.h"

namespace {

using namespace std::string_literals;
using Texts = std::vector<std::string>;

// A record made of so many texts, which are all it has.
template <class Make>
struct TextRecord {
  const char* name;
  std::size_t texts;
  Make make;
};
template <class Make>
TextRecord(const char*, std::size_t, Make) -> TextRecord<Make>;

// Calls `check` with each kind of record.
template <class Check>
void for_each_text_record(const Check& check) {
  check(TextRecord{"identifier", 1, [](const Texts& t) { return DatabaseEntryIdentifier(t[0]); }});
  check(TextRecord{"atom", 2, [](const Texts& t) { return Atom{t[0], t[1], {}, 0}; }});
  check(TextRecord{"connectivity atom", 2, [](const Texts& t) {
                     return ConnectivityAtom{t[0], t[1], 0, 0};
                   }});
  check(TextRecord{"chemical info", 8, [](const Texts& t) {
                     return ChemicalInfo(t[0], t[1], t[2], t[3], t[4], t[5], t[6], {}, {t[7]});
                   }});
  check(TextRecord{"crystal info", 11, [](const Texts& t) {
                     return CrystalInfo(0, 0, t[0], t[1], t[2], t[3], t[4], t[5], t[6], t[7], t[8], t[9],
                                        t[10]);
                   }});
  check(TextRecord{"experimental info", 5, [](const Texts& t) {
                     return ExperimentalInfo(0, t[0], t[1], 0, 0, 0, {}, {}, t[2], false, t[3], {}, t[4], {});
                   }});
  check(TextRecord{"editors info", 4, [](const Texts& t) {
                     return EditorsInfo({}, {}, {}, 0, t[0], {}, t[1], 0, t[2], t[3], {}, {});
                   }});
  check(TextRecord{"publication", 3,
                   [](const Texts& t) { return Publication({t[0]}, Journal(4), t[1], 0, t[2]); }});
  check(TextRecord{"cross-reference", 1, [](const Texts& t) {
                     return DatabaseCrossReference(DatabaseCrossReference::isomer, t[0]);
                   }});
  check(TextRecord{"cross-references", 1, [](const Texts& t) {
                     CrossReferenceInfo info;
                     info.insert(DatabaseCrossReference(DatabaseCrossReference::isomer, t[0]));
                     return info;
                   }});
  check(TextRecord{"depositions", 1, [](const Texts& t) {
                     DepositionInfo info;
                     info.set_text(DepositionInfo::contributor, t[0]);
                     return info;
                   }});
}

// The same with a NUL in place of each '#'.
std::string with_nuls(std::string text) {
  std::replace(text.begin(), text.end(), '#', '\0');
  return text;
}

template <class Record>
concept Printed = requires(const Record& record, std::ostream& os) {
  record.print(os);
};

TEST(WholeTexts, ArePrinted) {
  for_each_text_record([](const auto& record) {
    const auto with_sign = record.make(Texts(record.texts, "a#b#"));
    if constexpr (Printed<decltype(with_sign)>) {
      const std::string text = printed(with_sign);
      EXPECT_EQ(std::count(text.begin(), text.end(), '#'), 2 * record.texts) << record.name;
      EXPECT_EQ(printed(record.make(Texts(record.texts, "a\0b\0"s))), with_nuls(text)) << record.name;
    }
  });
}

TEST(WholeTexts, AreArchived) {
  for_each_text_record([](const auto& record) {
    const auto stored = [&](const std::string& text) {
      const auto filled = record.make(Texts(record.texts, text));
      return written([&](Archive& archive) { filled.write(archive); });
    };
    EXPECT_EQ(stored("a\0b\0"s), with_nuls(stored("a#b#"))) << record.name;
  });
}

TEST(WholeTexts, AreCompared) {
  for_each_text_record([](const auto& record) {
    const Texts texts(record.texts, "a\0b"s);
    EXPECT_TRUE(record.make(texts) == record.make(texts)) << record.name;
    for (std::size_t index = 0; index < record.texts; ++index) {
      for (const std::string& other : {"a\0c"s, "a"s, "a\0"s, "a\0b\0"s, "A\0b"s, "a\0 b"s}) {
        Texts others = texts;
        others[index] = other;
        EXPECT_FALSE(record.make(texts) == record.make(others)) << record.name << ", text " << index;
      }
    }
  });
}

TEST(WholeTexts, AreReadUpToTheirFirstNulAndTheStreamStaysInStep) {
  for_each_text_record([](const auto& record) {
    const auto filled = record.make(Texts(record.texts, "a\0b"s));
    auto back = record.make(Texts(record.texts, "old"));
    const std::string stored = written([&](Archive& archive) { filled.write(archive); });
    EXPECT_EQ(read_from(stored + "next", [&](Archive& archive) { back.read(archive); }),
              static_cast<long>(stored.size()))
        << record.name;
    EXPECT_TRUE(back == record.make(Texts(record.texts, "a"))) << record.name;
  });
}

TEST(WholeTexts, OfAuthorsAreJoined) {
  EXPECT_EQ(Publication({"a\0b"s, "c"}, Journal(4), "", 0, "").authors_comma_delimited(), "a\0b, c"s);
}

TEST(WholeTexts, OfIdentifiersAreAppendedToACrossReference) {
  const DatabaseEntryIdentifier identifier("A\0B"s);
  const auto type = DatabaseCrossReference::isomer;
  EXPECT_EQ(DatabaseCrossReference(type, "x\0y"s, identifier).text(), "x\0y [A\0B]"s);
  EXPECT_EQ(DatabaseCrossReference(type, "x\0y"s, std::vector(2, identifier)).text(), "x\0y [A\0B], [A\0B]"s);
}

TEST(WholeTexts, AreLookedUpInAMapping) {
  const auto probes = ExperimentalInfo::radiation_probe_text();
  EXPECT_THROW(static_cast<void>(probes->value("x-ray\0"s)), std::invalid_argument);
}

TEST(WholeTexts, OfAnEntryArePrinted) {
  CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier("A\0B"s),
                                               THandle<CrystalMaker>::make());
  EXPECT_TRUE(printed(entry).starts_with("identifier: A\0B\ncrystal maker:\n"s));
}

}  // namespace
