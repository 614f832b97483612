#include <array>
#include <gemmi/symmetry.hpp>
#include <set>
#include <stdexcept>

#include "exchange/cif/components.h"
#include "exchange/cif/numbers.h"
#include "exchange/cif/readable_text.h"
#include "exchange/cif/space_group_names.h"

namespace {

std::vector<std::string> split(const std::string& text) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == ',') {
      parts.emplace_back();
    } else if (c != ' ') {
      parts.back() += c;
    }
  }
  return parts;
}

bool is_time_reversal(const std::string& part) {
  return part == "+1" || part == "-1" || part == "1";
}

// What is written as an operator may act on more than a place: on time, in magnetic groups ("x,y,z,-1"), and
// on further dimensions, in superspace groups ("x1,x2,x3,-x4").
struct WrittenOperator {
  std::string space;  // "x,y,z"; empty where it cannot be told apart
  bool is_magnetic = false;
  bool is_superspace = false;
};

WrittenOperator written_operator(const std::string& text) {
  std::vector<std::string> parts = split(text);
  WrittenOperator result;
  if (parts.size() > 3 && is_time_reversal(parts.back())) {
    result.is_magnetic = true;
    parts.pop_back();
  }
  result.is_superspace = parts.size() > 3 || text.find("x1") != std::string::npos;
  if (parts.size() < 3) return result;
  constexpr std::array<char, 3> names = {'x', 'y', 'z'};
  for (std::size_t row = 0; row < 3; ++row) {
    std::string space;
    for (std::size_t i = 0; i < parts[row].size(); ++i) {
      const bool is_numbered = parts[row][i] == 'x' && i + 1 < parts[row].size() &&
                               parts[row][i + 1] >= '1' && parts[row][i + 1] <= '9';
      if (!is_numbered) {
        space += parts[row][i];
      } else if (parts[row][++i] > '3') {
        return result;  // a place that depends on a further dimension
      } else {
        space += names[static_cast<std::size_t>(parts[row][i] - '1')];
      }
    }
    result.space += (row == 0 ? "" : ",") + space;
  }
  return result;
}

std::string_view without_quotes(std::string_view raw) {
  const bool is_quoted = raw.size() >= 2 && (raw.front() == '\'' || raw.front() == '"');
  return is_quoted ? raw.substr(1, raw.size() - 2) : raw;
}

// Not so the placeholders and text fields.
bool begins_operator(char c) {
  return c == '-' || c == '+' || (c >= '0' && c <= '9') || (c | 0x20) == 'x' || (c | 0x20) == 'y' ||
         (c | 0x20) == 'z';
}

struct Translations {
  CifTagRange operators;
  CifTagRange centrings;
  const char* kind;
};

class OperatorFinder {
 public:
  OperatorFinder(const CifSource& source, const Cell& cell) : source_(source), cell_(cell) {}

  Operators operators() {
    for (const CifColumn& column : ordinary_columns()) {
      if (Operators operators = of_column(column); !operators.empty()) return operators;
    }
    constexpr std::array kinds = {
        Translations{field("magnetic_operators"), field("magnetic_centrings"), "magnetic operators"},
        Translations{field("superspace_operators"), {}, "superspace operators"},
        Translations{field("magnetic_superspace_operators"), field("magnetic_superspace_centrings"),
                     "magnetic superspace operators"},
    };
    for (const Translations& kind : kinds) {
      if (Operators operators = of_kind(kind); !operators.empty()) return operators;
    }
    source_.set_absent("symmetry_operators");
    if (Operators operators = of_name(); !operators.empty()) return operators;
    source_.warn(0, "no symmetry operators, and no known name of a space group to take them from");
    return {};
  }

 private:
  std::vector<CifColumn> ordinary_columns() const {
    std::vector<CifColumn> columns;
    constexpr CifTagRange tags = field("cell.symmetry_operators");
    for (std::size_t tag = tags.begin; tag < tags.end; ++tag) {
      if (const CifColumn column = source_.values().column(CifTag(tag))) columns.push_back(column);
    }
    return columns;
  }

  // Most are plain; the others are looked at as texts, and told of as such.
  static bool add_at_once(std::string_view raw, Operators& operators) {
    const std::string text(without_quotes(raw));
    if (text.empty() || !begins_operator(text.front())) return false;
    try {
      operators.push_back(CrystalSymmetryOperator(text));
      return true;
    } catch (const std::invalid_argument&) {
      return false;
    }
  }

  // None at all when one cannot be read: half a group is no group.
  Operators of_column(const CifColumn& column) {
    Operators operators;
    operators.reserve(column.count);
    for (std::size_t row = 0; row < column.count; ++row) {
      if (add_at_once(column[row], operators)) continue;
      const std::string text = source_.values().plain(column[row], column.line);
      if (text.empty()) continue;
      try {
        operators.push_back(CrystalSymmetryOperator(text));
      } catch (const std::invalid_argument& error) {
        const WrittenOperator written = written_operator(text);
        if (written.is_magnetic || written.is_superspace) {
          const char* const kind = !written.is_superspace ? "magnetic operators"
                                   : written.is_magnetic  ? "magnetic superspace operators"
                                                          : "superspace operators";
          return in_space(column, {}, kind);
        }
        source_.warn(column.line, "not a symmetry operator: {}", error.what());
        return {};
      }
    }
    if (!operators.empty()) source_.result().operators_from = "operators";
    return operators;
  }

  Operators of_kind(const Translations& kind) {
    const CifColumn column = source_.values().column(CifTag(kind.operators.begin));
    CifColumn centrings;
    if (kind.centrings.end != 0) centrings = source_.values().column(CifTag(kind.centrings.begin));
    const CifColumn second = kind.operators.end - kind.operators.begin > 1
                                 ? source_.values().column(CifTag(kind.operators.begin + 1))
                                 : CifColumn();
    if (!column && !second) return {};
    return in_space(column ? column : second, centrings, kind.kind);
  }

  // What the operators do in space: the symmetry of the nuclei, of a modulated structure that of its average.
  Operators in_space(const CifColumn& column, const CifColumn& centrings, const char* kind) {
    Operators operators;
    try {
      std::vector<gemmi::Op> translations;
      for (std::size_t row = 0; row < centrings.count; ++row)
        translations.push_back(op_in_space(centrings[row]));
      if (translations.empty()) translations.push_back(gemmi::Op::identity());
      std::set<std::string> known;
      for (const gemmi::Op& translation : translations) {
        for (std::size_t row = 0; row < column.count; ++row) {
          const gemmi::Op op = (translation * op_in_space(column[row])).wrap();
          if (known.insert(op.triplet()).second) operators.push_back(CrystalSymmetryOperator(op.triplet()));
        }
      }
    } catch (const std::exception& error) {
      source_.warn(column.line, "{} are not kept: {}", kind, error.what());
      return {};
    }
    source_.warn(column.line, "{}: what they do in space is kept, as symmetry of the nuclear structure",
                 kind);
    source_.result().operators_from = kind;
    return operators;
  }

  static gemmi::Op op_in_space(std::string_view raw) {
    const std::string text = one_line(cif_string(raw));
    const WrittenOperator written = written_operator(text);
    if (written.space.empty()) throw std::invalid_argument("'" + text + "'");
    // Checked by our reader first: the other one does not look at the size of numbers.
    const CrystalSymmetryOperator checked(written.space);
    return gemmi::parse_triplet(checked.xyz());
  }

  Operators of_name() {
    if (const auto hall = source_.values().first(field("hall_name"))) {
      NamedSpaceGroup group = find_space_group_by_hall(hall->text);
      if (!group.operators.empty()) return taken(group, hall->line, "Hall name");
      source_.warn(hall->line, "unknown Hall name '{}'", hall->text);
    }
    if (const auto name = raw_name()) {
      NamedSpaceGroup group = find_space_group(name->text, cell_);
      if (!group.operators.empty()) return taken(group, name->line, "Hermann-Mauguin name");
      source_.warn(name->line, "unknown Hermann-Mauguin name '{}'", name->text);
    }
    if (const auto number = source_.values().first(field("group_number"))) {
      const auto value = cif_integer(number->text);
      NamedSpaceGroup group = value ? find_space_group(*value, cell_) : NamedSpaceGroup();
      if (!group.operators.empty()) return taken(group, number->line, "number of the space group");
      source_.warn(number->line, "no space group has the number '{}'", number->text);
    }
    return {};
  }

  // Markup is part of these names: "P2~1~/c".
  std::optional<CifText> raw_name() const {
    constexpr CifTagRange tags = field("hermann_mauguin_name");
    for (std::size_t tag = tags.begin; tag < tags.end; ++tag) {
      const CifColumn column = source_.values().column(CifTag(tag));
      for (std::size_t row = 0; row < column.count; ++row) {
        std::string text = source_.values().plain(column[row], column.line);
        if (!text.empty()) return CifText{std::move(text), column.line};
      }
    }
    return std::nullopt;
  }

  Operators taken(NamedSpaceGroup& group, int line, const char* from) {
    if (!group.fits_cell) {
      source_.warn(line, "the cell does not have the shape that the space group {} asks for", group.name);
    }
    if (group.origin_is_a_guess) {
      source_.warn(line, "the space group has two origins, and nothing tells which: {} is taken", group.name);
    }
    source_.result().operators_from = from;
    return std::move(group.operators);
  }

  const CifSource& source_;
  const Cell& cell_;
};

}  // namespace

Operators operators_of(const CifSource& source, const Cell& cell) {
  return OperatorFinder(source, cell).operators();
}
