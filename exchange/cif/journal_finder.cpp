#include "exchange/cif/journal_finder.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include "exchange/rebuild.h"

namespace {

constexpr std::array<std::string_view, 14> little_words = {"a",    "and", "der", "die", "et", "fur", "for",
                                                           "fuer", "in",  "la",  "of",  "on", "the", "und"};

// The words of a title in lower case, without little words. A full stop belongs to the word before it.
std::vector<std::string> title_words(const std::string& title) {
  std::vector<std::string> words;
  std::string word;
  const auto end_word = [&] {
    if (!word.empty() && std::find(little_words.begin(), little_words.end(), word) == little_words.end()) {
      words.push_back(word);
    }
    word.clear();
  };
  // Older titles are told apart by years: "Acta Crystallographica (1,1948-23,1967)".
  for (const char c : title.substr(0, title.find(" ("))) {
    const auto byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte) != 0 || byte >= 0x80) {
      word += static_cast<char>(std::tolower(byte));
    } else {
      if (c == '.' && !word.empty()) word += '.';
      end_word();
    }
  }
  end_word();
  return words;
}

bool stands_for(const std::string& listed, const std::string& word) {
  if (listed.back() != '.') return listed == word;
  return word.compare(0, listed.size() - 1, listed, 0, listed.size() - 1) == 0;
}

Journal kept_journal(const std::string& coden, const std::string& title) {
  Journal journal(Journal::max_vorn_coden() + 1);
  const std::string kept_coden = coden.empty() ? journal.international_coden() : coden;
  const std::string kept_title = title.empty() ? journal.name() : title;
  const int number = journal.coden();
  rebuild(journal, kept_title, number, kept_coden);
  return journal;
}

}  // namespace

const JournalFinder& JournalFinder::instance() {
  static const JournalFinder finder;
  return finder;
}

JournalFinder::JournalFinder() {
  for (int coden = 1; coden <= Journal::max_vorn_coden(); ++coden) {
    const Journal journal(coden);
    if (journal.state() == Journal::unknown) continue;
    by_international_coden_.emplace(journal.international_coden(), coden);
    titles_.push_back({title_words(journal.name()), coden});
  }
}

Journal JournalFinder::find(const std::string& coden, const std::string& title) const {
  if (!coden.empty()) {
    const auto found = by_international_coden_.find(coden);
    return found == by_international_coden_.end() ? kept_journal(coden, title) : Journal(found->second);
  }
  const std::vector<std::string> words = title_words(title);
  std::vector<int> found;
  for (const Titled& listed : titles_) {
    if (!listed.words.empty() &&
        std::equal(listed.words.begin(), listed.words.end(), words.begin(), words.end(), stands_for)) {
      found.push_back(listed.coden);
    }
  }
  return found.size() == 1 ? Journal(found.front()) : kept_journal(coden, title);
}
