#include "stores/support/random_queries.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <type_traits>

namespace {

// The library's own distributions differ from one standard library to the other; this does not.
class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed) {}

  std::size_t below(std::size_t limit) { return engine_() % limit; }
  bool once_in(std::size_t limit) { return below(limit) == 0; }
  double fraction() { return static_cast<double>(engine_() >> 11) / 9007199254740992.0; }
  template <class List>
  const auto& one_of(const List& list) {
    return list[below(list.size())];
  }

 private:
  std::mt19937_64 engine_;
};

const std::vector<std::string> texts = {"rutile",
                                        "Rutile",
                                        "RUTILE form",
                                        "titanium(IV) oxide",
                                        "O2 Ti",
                                        "O2Ti",
                                        "R.W.G.Wyckoff",
                                        "Wyckoff",
                                        "WYCKOFF",
                                        "M\xC3\xBCller",
                                        "M\xC3\x9CLLER",
                                        "J.Am.Chem.Soc.",
                                        "JACSAT",
                                        "it's \"quoted\"",
                                        "back\\slash",
                                        "100% pure, cold",
                                        "under_score",
                                        "a;DROP TABLE entry;--",
                                        "\xFF\xFE no utf-8",
                                        "12",
                                        "9",
                                        "\xCE\x91lpha",
                                        "x",
                                        "12-13"};
const std::vector<std::string> symbols = {"Ti", "O", "C", "H", "N", "Fe", "Si", "D", "Cl"};

template <class T>
void fill(Dice& dice, std::optional<T>& value, double scale, double offset) {
  if (dice.once_in(4)) return;
  if constexpr (std::is_same_v<T, double>) {
    value = offset + scale * static_cast<double>(dice.below(9)) / 8.0;
  } else {
    value = static_cast<T>(offset + scale * static_cast<double>(dice.below(9)) / 8.0);
  }
}

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char letter : text) {
    if (letter == '"' || letter == '\\') result += '\\';
    result += letter;
  }
  return result + '"';
}

struct Column {
  std::string short_name;
  std::string filter_name;
  bool is_list;
  bool is_text;
  bool is_time;
};

std::vector<Column> all_columns() {
  std::vector<Column> result;
  for_each_entry_column([&]<class T>(const EntryColumn<T>& column) {
    if (EntryColumn<T>::is_elements) return;
    const std::string name = column.filter_name;
    result.push_back(
        {column.short_name, name, EntryColumn<T>::is_list, EntryColumn<T>::is_text, name == "last_modified"});
  });
  return result;
}

class Writer {
 public:
  Writer(const std::vector<EntryColumns>& columns, std::uint64_t seed) : entries_(columns), dice_(seed) {}

  std::string filter(std::size_t depth) {
    if (depth == 0 || dice_.once_in(3)) return phrase();
    switch (dice_.below(4)) {
      case 0:
        return "NOT (" + filter(depth - 1) + ")";
      case 1:
        return "(" + filter(depth - 1) + ") OR " + filter(depth - 1);
      default:
        return "(" + filter(depth - 1) + ") AND (" + filter(depth - 1) + ")";
    }
  }

  std::string text() {
    std::string result = condition();
    for (std::size_t more = dice_.below(3); more > 0; --more) result += ',' + condition();
    return result;
  }

  EntryQuery cell() {
    for (int tries = 0; tries < 50; ++tries) {
      const EntryColumns& entry = dice_.one_of(entries_);
      if (!entry.reduced_a || !entry.reduced_gamma) continue;
      const double change = 1.0 + 0.02 * (dice_.fraction() - 0.5);
      return EntryQuery::cell({*entry.reduced_a * change, *entry.reduced_b, *entry.reduced_c,
                               *entry.reduced_alpha, *entry.reduced_beta, *entry.reduced_gamma},
                              dice_.once_in(2) ? 1.5 : 0.1);
    }
    return EntryQuery::cell({5, 5, 5, 90, 90, 90}, 1);
  }

  Dice& dice() { return dice_; }

 private:
  // Of a column that is a number, as one of the entries has it, or another.
  std::string number(const Column& column) {
    std::string result = std::to_string(dice_.below(40));
    if (dice_.once_in(4)) result += ".5";
    const EntryColumns& entry = dice_.one_of(entries_);
    for_each_entry_column([&]<class T>(const EntryColumn<T>& row) {
      if constexpr (std::is_same_v<T, std::optional<double>> ||
                    std::is_same_v<T, std::optional<std::int64_t>>) {
        const auto& value = entry.*row.member;
        if (column.filter_name == row.filter_name && value) result = std::to_string(*value);
      }
    });
    return dice_.once_in(40) ? "-1e300" : result;
  }

  std::string words(const Column& column) {
    std::string result = dice_.one_of(texts);
    const EntryColumns& entry = dice_.one_of(entries_);
    for_each_entry_column([&]<class T>(const EntryColumn<T>& row) {
      if (column.filter_name != row.filter_name || dice_.once_in(4)) return;
      if constexpr (std::is_same_v<T, std::optional<std::string>>) {
        if (entry.*row.member) result = *(entry.*row.member);
      } else if constexpr (std::is_same_v<T, std::string>) {
        result = entry.*row.member;
      } else if constexpr (std::is_same_v<T, std::vector<std::string>>) {
        if (!(entry.*row.member).empty()) result = dice_.one_of(entry.*row.member);
      }
    });
    if (column.is_time) return result;
    if (dice_.once_in(3)) result = result.substr(dice_.below(result.size() + 1), dice_.below(6));
    return result;
  }

  std::string relation() { return dice_.one_of(std::vector<std::string>{"=", "!=", "<", "<=", ">", ">="}); }
  std::string text_relation() {
    return dice_.once_in(2) ? relation()
                            : dice_.one_of(std::vector<std::string>{" CONTAINS ", " STARTS WITH ", " STARTS ",
                                                                    " ENDS WITH "});
  }

  std::string tests(const std::vector<std::string>& values) {
    std::string result;
    for (const std::string& value : values) result += (result.empty() ? "" : ", ") + value;
    return result;
  }

  // A list and what is asked of it.
  std::string set(const std::string& list, const std::vector<std::string>& values) {
    switch (dice_.below(4)) {
      case 0:
        return list + " HAS " + values.front();
      case 1:
        return list + " HAS ALL " + tests(values);
      case 2:
        return list + " HAS ANY " + tests(values);
      default:
        return list + " HAS ONLY " + tests(values);
    }
  }

  std::string element_phrase() {
    std::vector<std::string> values;
    for (std::size_t more = 1 + dice_.below(3); more > 0; --more) {
      values.push_back((dice_.once_in(6) ? relation() : "") + quoted(dice_.one_of(symbols)));
    }
    switch (dice_.below(6)) {
      case 0:
        return "elements LENGTH " + relation() + std::to_string(dice_.below(5));
      case 1: {
        std::string symbol = dice_.one_of(symbols);
        symbol[0] = static_cast<char>(symbol[0] - 'A' + 'a');
        return "_dbentry_count_" + symbol + relation() + std::to_string(dice_.below(4));
      }
      case 2:
        return set("elements_ratios", {relation() + "0.25", relation() + "0.5"});
      default:
        return set("elements", values);
    }
  }

  std::string phrase() {
    const Column& column = dice_.one_of(columns_);
    if (dice_.once_in(4)) return element_phrase();
    const std::string& name = column.filter_name;
    if (dice_.once_in(10)) return name + (dice_.once_in(2) ? " IS KNOWN" : " IS UNKNOWN");
    if (column.is_list) {
      if (dice_.once_in(5)) return name + " LENGTH " + relation() + std::to_string(1 + dice_.below(3));
      std::vector<std::string> values;
      for (std::size_t more = 1 + dice_.below(3); more > 0; --more) {
        values.push_back((dice_.once_in(2) ? text_relation() : "") + quoted(words(column)));
      }
      if (dice_.once_in(8)) values.emplace_back("_dbentry_page");
      return set(name + (dice_.once_in(2) ? "_folded" : ""), values);
    }
    if (!column.is_text) {
      if (dice_.once_in(8))
        return name + relation() +
               dice_.one_of(std::vector<std::string>{"_dbentry_a", "nelements", "_dbentry_count_o"});
      return dice_.once_in(5) ? number(column) + relation() + name : name + relation() + number(column);
    }
    if (column.is_time)
      return name + relation() + "\"2020-01-0" + std::to_string(1 + dice_.below(9)) + "T00:00:00Z\"";
    if (dice_.once_in(8))
      return name + text_relation() +
             dice_.one_of(std::vector<std::string>{"_dbentry_formula", "id", "_dbentry_source_folded"});
    return name + (dice_.once_in(2) ? "_folded" : "") + text_relation() + quoted(words(column));
  }

  std::string condition() {
    const std::string negation = dice_.once_in(5) ? "!" : "";
    if (dice_.once_in(3)) {
      const std::string& symbol = dice_.one_of(symbols);
      return negation + symbol + (dice_.once_in(2) ? "" : relation() + std::to_string(dice_.below(4)));
    }
    const Column* column = nullptr;
    do {
      column = &dice_.one_of(columns_);
    } while (column->short_name.empty());
    if (dice_.once_in(12)) return negation + column->short_name;
    if (column->is_text) {
      const std::string sign = dice_.once_in(3)   ? "~"
                               : dice_.once_in(3) ? "!~"
                               : dice_.once_in(3) ? relation()
                                                  : "=";
      return negation + column->short_name + sign + quoted(words(*column));
    }
    const std::string value = number(*column);
    switch (dice_.below(4)) {
      case 0:
        return negation + column->short_name + "=" + value + "~" + std::to_string(dice_.below(20)) + "%";
      case 1:
        return negation + column->short_name + "=" + value + "..";
      case 2:
        return negation + column->short_name + "!=" + value + "~0.25";
      default:
        return negation + column->short_name + relation() + value;
    }
  }

  const std::vector<EntryColumns>& entries_;
  Dice dice_;
  std::vector<Column> columns_ = all_columns();
};

}  // namespace

std::vector<EntryColumns> random_columns(std::size_t count, std::uint64_t seed) {
  Dice dice(seed);
  std::vector<EntryColumns> result(count);
  for (std::size_t index = 0; index < count; ++index) {
    EntryColumns& entry = result[index];
    for_each_entry_column([&]<class T>(const EntryColumn<T>& column) {
      T& value = entry.*column.member;
      if constexpr (std::is_same_v<T, std::vector<std::string>>) {
        for (std::size_t more = dice.below(4); more > 0; --more) {
          const std::string& text = dice.one_of(texts);
          if (std::find(value.begin(), value.end(), text) == value.end()) value.push_back(text);
        }
      } else if constexpr (std::is_same_v<T, std::optional<std::string>>) {
        if (!dice.once_in(4)) value = dice.one_of(texts);
      } else if constexpr (std::is_same_v<T, std::optional<std::int64_t>>) {
        fill(dice, value, 16.0, 1.0);
      } else if constexpr (std::is_same_v<T, std::optional<double>>) {
        fill(dice, value, 8.0, 0.5);
      }
    });
    entry.identifier = dice.one_of(texts) + std::to_string(index);
    entry.elements.clear();
    entry.element_count.reset();
    for (const std::string& symbol : symbols) {
      if (dice.once_in(3))
        entry.elements.push_back({symbol, dice.once_in(4) ? 1.5 : static_cast<double>(1 + dice.below(4))});
    }
    std::sort(entry.elements.begin(), entry.elements.end(),
              [](const ElementCount& a, const ElementCount& b) { return a.symbol < b.symbol; });
    if (!entry.elements.empty()) entry.element_count = static_cast<std::int64_t>(entry.elements.size());
    if (entry.stored_at) entry.stored_at = "2020-01-0" + std::to_string(1 + dice.below(9)) + "T00:00:00Z";
    // Some cells, as the reduction leaves them: orthogonal, and known as a whole or not at all.
    std::array<double, 3> edges = {4.0 + 0.05 * static_cast<double>(dice.below(5)),
                                   5.0 + 0.05 * static_cast<double>(dice.below(5)),
                                   6.0 + 0.05 * static_cast<double>(dice.below(5))};
    if (dice.once_in(4)) {
      entry.reduced_a = entry.reduced_b = entry.reduced_c = entry.reduced_alpha = entry.reduced_beta =
          entry.reduced_gamma = entry.reduced_volume = std::nullopt;
    } else {
      entry.reduced_a = edges[0];
      entry.reduced_b = edges[1];
      entry.reduced_c = edges[2];
      entry.reduced_alpha = entry.reduced_beta = entry.reduced_gamma = 90.0;
      entry.reduced_volume = edges[0] * edges[1] * edges[2];
    }
  }
  return result;
}

std::vector<std::string> random_filters(const std::vector<EntryColumns>& columns, std::size_t count,
                                        std::uint64_t seed) {
  Writer writer(columns, seed);
  std::vector<std::string> result;
  while (result.size() < count) result.push_back(writer.filter(writer.dice().below(4)));
  return result;
}

std::vector<std::string> random_texts(const std::vector<EntryColumns>& columns, std::size_t count,
                                      std::uint64_t seed) {
  Writer writer(columns, seed);
  std::vector<std::string> result;
  while (result.size() < count) result.push_back(writer.text());
  return result;
}

std::vector<EntryQuery> random_queries(const std::vector<EntryColumns>& columns, std::size_t count,
                                       std::uint64_t seed) {
  Writer writer(columns, seed);
  std::vector<EntryQuery> result;
  while (result.size() < count) {
    if (result.size() % 2 == 0) {
      result.push_back(EntryQuery::from_filter(writer.filter(writer.dice().below(4))));
    } else if (result.size() % 20 == 1) {
      const EntryQuery cell = writer.cell();
      result.push_back(writer.dice().once_in(3) ? !cell && EntryQuery::from_text(writer.text()) : cell);
    } else {
      result.push_back(EntryQuery::from_text(writer.text()));
    }
  }
  return result;
}

std::vector<std::string> found_by_scan(const std::vector<EntryColumns>& columns, const EntryQuery& query) {
  std::vector<std::string> found;
  for (const EntryColumns& entry : columns) {
    if (query.matches(entry)) found.push_back(entry.identifier);
  }
  std::sort(found.begin(), found.end());
  return found;
}
