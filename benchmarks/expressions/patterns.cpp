#include "expressions/patterns.h"

#include <functional>
#include <map>

#include "support/random_text.h"

namespace {

constexpr unsigned int extended = 8;

std::string some_digits(RandomText& random, std::size_t most) {
  return random.digits(1 + random.below(most));
}

std::string refcode(RandomText& random) {
  return joined(random.letters(6), random.one_in(2) ? random.digits(2) : "");
}

// What the pattern finds, as a text has it.
using Token = std::function<std::string(RandomText&)>;
const std::map<std::string, Token>& tokens() {
  static const std::map<std::string, Token> table = {
      {"refcode", [](RandomText& r) { return joined("[", refcode(r), "]"); }},
      {"letter and digits", [](RandomText& r) { return joined("[", r.letters(1), r.digits(7), "]"); }},
      {"VORN", [](RandomText& r) { return joined("VORN ", some_digits(r, 7)); }},
      {"FIZ", [](RandomText& r) { return joined("MRV ", some_digits(r, 7)); }},
      {"IUCR validation", [](RandomText& r) { return joined("IUC", some_digits(r, 7)); }},
      {"IUCR coeditor",
       [](RandomText& r) { return joined(r.one_in(2) ? "IUCr " : "IUCR ", r.letters(2), r.digits(4)); }},
      {"JDS", [](RandomText& r) { return joined(some_digits(r, 3), "/", some_digits(r, 3)); }},
      {"RUSSIAN", [](RandomText& r) { return joined("R", some_digits(r, 5)); }},
      {"ARCHIVE", [](RandomText& r) { return joined(some_digits(r, 6), r.one_in(2) ? r.letters(1) : ""); }},
      {"MSD BIB", [](RandomText& r) { return some_digits(r, 6); }},
      {"NBS ID", [](RandomText& r) { return some_digits(r, 6); }},
      {"NBS CD", [](RandomText& r) { return some_digits(r, 6); }},
  };
  return table;
}

// Words, with up to three tokens among them; one text in eight has none.
std::string sentence(RandomText& random, const Token& token, std::size_t length) {
  std::string text = random.words(1);
  while (text.size() < length) text += joined(random.one_in(6) ? ", " : " ", random.words(1));
  const std::size_t token_count = random.one_in(8) ? 0 : 1 + random.below(3);
  for (std::size_t index = 0; index < token_count; ++index) {
    const std::size_t blank = text.find(' ', random.below(text.size() - 12));
    text.insert(blank, joined(" ", token(random)));
  }
  return text;
}

// A refcode alone between blanks, or something else there.
std::string lone_refcode(RandomText& random, std::size_t length) {
  const std::string middle = random.one_in(4) ? random.words(1) : refcode(random);
  const std::size_t before = random.below(length - middle.size());
  return joined(std::string(before, ' '), middle, std::string(length - middle.size() - before, ' '));
}

// The name of a query file; of one in eight the ending is missing.
std::string file_name(RandomText& random, std::size_t length, bool with_blank) {
  const std::string lower = "abcdefghijklmnopqrstuvwxyz";
  const std::string ending = random.one_in(8) ? "" : ".qdx";
  const std::string front =
      joined(some_digits(random, 3), ".", some_digits(random, 3), with_blank ? " " : "");
  const std::string set = with_blank ? joined(lower, "0123456789-(),.") : lower;
  return joined(front, random.characters(set, length - front.size() - ending.size()), ending);
}

std::string repeated(const std::string& unit, std::size_t size) {
  std::string text;
  text.reserve(size + unit.size());
  while (text.size() < size) text += unit;
  text.resize(size);
  return text;
}

}  // namespace

const std::vector<Pattern>& patterns() {
  static const std::vector<Pattern> all = {
      {"refcode",
       "\\[          # initial literal [\n"
       "([A-Za-z]{6} # 6 alphabetic characters and opening of capturing brackets\n"
       "(\\d\\d)?)   # optional two decimal digits and closing of capturing brackets\n"
       "\\]          # terminal literal ]\n",
       extended, "\\[([A-Za-z]{6}(\\d\\d)?)\\]"},
      {"letter and digits",
       "\\[          # initial literal [\n"
       "([A-Za-z]    # alphabetic character and opening of capturing brackets\n"
       "[0-9]{7})    # seven decimal digits and closing of capturing brackets\n"
       "\\]          # terminal literal ]\n",
       extended, "\\[([A-Za-z][0-9]{7})\\]"},
      {"VORN", "VORN\\s(\\d+)", 0, "VORN\\s(\\d+)"},
      {"FIZ", "MRV\\s(\\d+)", 0, "MRV\\s(\\d+)"},
      {"IUCR validation", "IUC\\d+", 0, "IUC\\d+"},
      {"IUCR coeditor", "IUC(r|R)\\s(\\w+)", 0, "IUC(r|R)\\s(\\w+)"},
      {"JDS", "\\d+/\\d+", 0, "\\d+/\\d+"},
      {"RUSSIAN", "R\\d+", 0, "R\\d+"},
      {"ARCHIVE", "\\d+[A-Z]{0,1}", 0, "\\d+[A-Z]{0,1}"},
      {"MSD BIB", "\\d+", 0, "\\d+"},
      {"NBS ID", "\\d+", 0, "\\d+"},
      {"NBS CD", "\\d+", 0, "\\d+"},
      {"MRV refcode", "^\\s*([A-Z]{6}[0-9]{0,2})\\s*$", 0, "^\\s*([A-Z]{6}[0-9]{0,2})\\s*$"},
      {"file name with blank", "^([0-9\\.]+)\\s+([A-Za-z0-9\\-\\(\\)\\,\\.]+)\\.qdx", 0,
       "^([0-9.]+)\\s+([A-Za-z0-9\\-(),.]+)\\.qdx"},
      {"file name", "^([0-9\\.]+[A-Za-z]+).qdx", 0, "^([0-9.]+[A-Za-z]+).qdx"},
  };
  return all;
}

std::vector<std::string> texts_for(const Pattern& pattern) {
  RandomText random(20061);
  std::vector<std::string> texts;
  for (int index = 0; index < 64; ++index) {
    const auto length = static_cast<std::size_t>(random.between(60, 170));
    if (pattern.name == "MRV refcode") {
      texts.push_back(lone_refcode(random, length));
    } else if (pattern.name == "file name with blank" || pattern.name == "file name") {
      texts.push_back(file_name(random, length, pattern.name == "file name with blank"));
    } else {
      texts.push_back(sentence(random, tokens().at(pattern.name), length));
    }
  }
  return texts;
}

std::vector<HostileText> hostile_texts(std::size_t size) {
  const std::size_t half = size / 2;
  return {{"digits", repeated("1", size)},
          {"upper case", repeated("A", size)},
          {"lower case", repeated("a", size)},
          {"blanks", repeated(" ", size)},
          {"blanks, then letters", joined(repeated(" ", half), repeated("A", half))},
          {"digits, then a slash", joined(repeated("1", size - 1), "/")},
          {"brackets", repeated("[", size)},
          {"open refcodes", repeated("[ABCDEF", size)},
          {"refcodes one digit short", repeated("[ABCDEF1]", size)},
          {"open identifiers", repeated("[A1234567", size)},
          {"VORN without numbers", repeated("VORN ", size)},
          {"MRV without numbers", repeated("MRV ", size)},
          {"IUC without numbers", repeated("IUCr", size)},
          {"one long IUCr word", joined("IUCr ", repeated("a", size - 5))},
          {"R", repeated("R", size)},
          {"numbers and letters", repeated("1A", size)},
          {"slashes", repeated("1/", size)},
          {"a number, then dots", joined("1 ", repeated(".", size - 2))},
          {"a number, then endings", joined("1 ", repeated(".qd", size - 2))},
          {"digits, then letters", joined(repeated("1", half), repeated("a", half))}};
}
