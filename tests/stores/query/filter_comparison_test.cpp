// Filters by the ten thousand, held against an independent parser: the same are refused, and the others are
// read as the same tree. That parser knows neither booleans nor properties alone nor CONTAINS and its like
// within lists, and it takes a text without an end, or with another escape, for the end of the filter; such
// filters are written by hand in filter_meaning_test.cpp.
#include <gtest/gtest.h>
#include <stores/entry_query_error.h>
#include <stores/query/filter_syntax.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

// In place of what the other parser does not know.
constexpr const char* beyond = "\x01";

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char letter : text) {
    if (letter == '"' || letter == '\\') result += '\\';
    result += letter;
  }
  return result + '"';
}

std::string operand(const FilterOperand& value) {
  // The other parser writes numbers as texts.
  return value.kind == FilterOperand::Kind::property ? value.text : quoted(value.text);
}

const char* sign(EntryOperator comparison) {
  constexpr const char* signs[] = {"=", "!=", "<", "<=", ">", ">=", "CONTAINS", "STARTS", "ENDS"};
  return signs[static_cast<std::size_t>(comparison)];
}

// Without the WITH that may be left out, which the other parser repeats as it was written.
std::string without_with(const std::string& filter) {
  std::string result;
  bool within_text = false;
  for (std::size_t at = 0; at < filter.size(); ++at) {
    if (filter[at] == '\\') {
      result += filter[at++];
    } else if (filter[at] == '"') {
      within_text = !within_text;
    } else if (!within_text && filter.compare(at, 5, "WITH ") == 0) {
      at += 5;
      if (filter[at] == '"') within_text = true;
    }
    result += filter[at];
  }
  return result;
}

std::string written(const FilterPhrase& phrase);

std::string chain(const std::vector<FilterPhrase>& children, std::size_t begin, const char* word) {
  if (begin + 1 == children.size()) return written(children[begin]);
  return '(' + written(children[begin]) + word + chain(children, begin + 1, word) + ')';
}

std::string list(const FilterPhrase& phrase, const char* word) {
  std::string result = '(' + operand(phrase.left) + ' ' + word;
  for (std::size_t index = 0; index < phrase.tests.size(); ++index) {
    result += std::string(index == 0 ? " " : ", ") + sign(phrase.tests[index].comparison) + ' ' +
              operand(phrase.tests[index].value);
  }
  return result + ')';
}

// As the other parser writes a tree.
std::string written(const FilterPhrase& phrase) {
  switch (phrase.kind) {
    case FilterPhrase::Kind::all:
      return chain(phrase.children, 0, " AND ");
    case FilterPhrase::Kind::any:
      return chain(phrase.children, 0, " OR ");
    case FilterPhrase::Kind::negation:
      return "(NOT " + written(phrase.children.front()) + ')';
    case FilterPhrase::Kind::comparison:
      return '(' + operand(phrase.left) + ' ' + sign(phrase.tests[0].comparison) + ' ' +
             operand(phrase.tests[0].value) + ')';
    case FilterPhrase::Kind::known:
      return operand(phrase.left) + " IS KNOWN";
    case FilterPhrase::Kind::unknown:
      return operand(phrase.left) + " IS UNKNOWN";
    case FilterPhrase::Kind::has:
      return list(phrase, "HAS");
    case FilterPhrase::Kind::has_all:
      return list(phrase, "HAS ALL");
    case FilterPhrase::Kind::has_any:
      return list(phrase, "HAS ANY");
    case FilterPhrase::Kind::has_only:
      return list(phrase, "HAS ONLY");
    case FilterPhrase::Kind::length:
      return list(phrase, "LENGTH");
    case FilterPhrase::Kind::bare:
    case FilterPhrase::Kind::correlated:
      return beyond;
  }
  return beyond;
}

// The pieces of filters, put together at random: as a rule by the grammar, now and then with one too many,
// one too few or two exchanged.
class Pieces {
 public:
  std::string filter() {
    pieces_.clear();
    expression(below(4));
    if (below(3) == 0) spoil();
    std::string result;
    for (const std::string& piece : pieces_) {
      result += piece;
      // White space is free between tokens, except where two would become one.
      if (below(3) != 0) result += below(8) == 0 ? "\t  " : " ";
    }
    return result;
  }

 private:
  std::size_t below(std::size_t limit) { return engine_() % limit; }
  const std::string& one_of(const std::vector<std::string>& list) { return list[below(list.size())]; }
  void add(const std::string& piece) { pieces_.push_back(piece); }

  void property() {
    add(one_of({"a", "nelements", "_dbentry_year", "x1_", "or_not", "chemical_formula_hill"}));
    if (below(10) == 0) {
      add(".");
      add("b");
    }
  }
  void number() {
    add(one_of({"12345",
                "+12",
                "-34",
                "1.2",
                ".2E7",
                "-.2E+7",
                "+10.01E-10",
                "6.03e23",
                ".1E1",
                "-.1e1",
                "1.e-12",
                "-.1e-12",
                "1000000000.E1000000000",
                "1.",
                ".1",
                "1.234D12",
                ".e1",
                "-.E1",
                "+.E2",
                "1.23E+++",
                "+-123",
                "0"}));
  }
  void text() {
    add(one_of({"\"\"", "\"x\"", "\"a \\\" b\"", "\"\\\\\"", "\"AND ( 1 , :\"", "\"\xC3\xA9\xE2\x82\xAC\"",
                "\"tab\there\"", "\"'`~!@#$%^&*+-/;<=>?[]{|}\""}));
  }
  void value() {
    switch (below(3)) {
      case 0:
        return property();
      case 1:
        return number();
      default:
        return text();
    }
  }
  void relation() { add(one_of({"=", "!=", "<", "<=", ">", ">="})); }
  void entry() {
    if (below(3) == 0) relation();
    value();
  }
  void comparison() {
    if (below(5) == 0) {
      below(2) == 0 ? number() : text();
      relation();
      return value();
    }
    property();
    switch (below(6)) {
      case 0:
        add("IS");
        return add(one_of({"KNOWN", "UNKNOWN"}));
      case 1:
        add(one_of({"CONTAINS", "STARTS", "ENDS", "STARTS WITH", "ENDS WITH", "STARTSWITH"}));
        return value();
      case 2:
        add("HAS");
        return entry();
      case 3:
        add("HAS");
        add(one_of({"ALL", "ANY", "ONLY"}));
        entry();
        for (std::size_t more = below(3); more > 0; --more) {
          add(",");
          entry();
        }
        return;
      case 4:
        add("LENGTH");
        return entry();
      default:
        relation();
        return value();
    }
  }
  void expression(std::size_t depth) {
    for (std::size_t more = 1 + below(3); more > 0; --more) {
      if (below(4) == 0) add("NOT");
      if (depth > 0 && below(2) == 0) {
        add("(");
        expression(depth - 1);
        add(")");
      } else {
        comparison();
      }
      if (more > 1) add(one_of({"AND", "OR"}));
    }
  }
  void spoil() {
    const std::size_t at = below(pieces_.size());
    switch (below(3)) {
      case 0:
        pieces_.erase(pieces_.begin() + static_cast<std::ptrdiff_t>(at));
        return;
      case 1:
        pieces_.insert(pieces_.begin() + static_cast<std::ptrdiff_t>(at), pieces_[below(pieces_.size())]);
        return;
      default:
        std::swap(pieces_[at], pieces_[below(pieces_.size())]);
    }
  }

  std::mt19937_64 engine_{7};
  std::vector<std::string> pieces_;
};

// The answers of the other parser, a line each.
std::vector<std::string> judged(const std::vector<std::string>& filters) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("filter_comparison." + std::to_string(getpid()));
  std::filesystem::create_directory(folder);
  {
    std::ofstream file(folder / "filters");
    for (const std::string& filter : filters) file << filter << '\n';
  }
  const std::string command = std::string(PERL) + " '" FILTER_COMPARISON_SCRIPT "' < '" +
                              (folder / "filters").string() + "' > '" + (folder / "answers").string() + "'";
  EXPECT_EQ(std::system(command.c_str()), 0);
  std::vector<std::string> answers;
  std::ifstream file(folder / "answers");
  for (std::string line; std::getline(file, line);) answers.push_back(line);
  file.close();
  std::filesystem::remove_all(folder);
  return answers;
}

std::string ours(const std::string& filter) {
  try {
    return written(parse_filter(filter));
  } catch (const EntryQueryError&) {
    return "ERROR";
  }
}

}  // namespace

TEST(FilterComparison, TenThousandFiltersAreReadAsAnIndependentParserReadsThem) {
  std::vector<std::string> filters;
  Pieces pieces;
  std::size_t left_out = 0;
  while (filters.size() < 10'000) {
    const std::string filter = pieces.filter();
    if (ours(filter).find(beyond) != std::string::npos) {
      ++left_out;
      continue;
    }
    filters.push_back(filter);
  }
  const std::vector<std::string> answers = judged(filters);
  ASSERT_EQ(answers.size(), filters.size());
  std::size_t read = 0;
  for (std::size_t index = 0; index < filters.size(); ++index) {
    ASSERT_EQ(ours(filters[index]), without_with(answers[index])) << filters[index];
    if (answers[index] != "ERROR") ++read;
  }
  // Both kinds are well represented.
  EXPECT_GT(read, 3'000U);
  EXPECT_LT(read, 8'000U);
  EXPECT_LT(left_out, 3'000U);
}
