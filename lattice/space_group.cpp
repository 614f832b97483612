#include <lattice/lattice_error.h>
#include <lattice/operator_parts.h>
#include <lattice/reduced_cell.h>
#include <lattice/space_group.h>

#include <algorithm>
#include <cstdint>
#include <gemmi/symmetry.hpp>
#include <map>
#include <optional>
#include <set>

namespace {

constexpr int whole = translation_denominator;
static_assert(whole == gemmi::Op::DEN);
constexpr std::size_t most_operators = 192;  // those of a face-centred cubic group

using Rotation = std::array<std::array<int, 3>, 3>;
using Translation = std::array<int, 3>;  // in twenty-fourths, 0 to 23

struct Operator {
  Rotation rotation{};
  Translation translation{};

  friend auto operator<=>(const Operator&, const Operator&) = default;
};

using Group = std::vector<Operator>;  // sorted, each once

int modulo(int value) {
  return ((value % whole) + whole) % whole;
}

Rotation product(const Rotation& left, const Rotation& right) {
  Rotation result{};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      for (std::size_t k = 0; k < 3; ++k) result[i][j] += left[i][k] * right[k][j];
  return result;
}

Translation product(const Rotation& rotation, const Translation& translation) {
  Translation result{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) result[i] += rotation[i][k] * translation[k];
    result[i] = modulo(result[i]);
  }
  return result;
}

Translation sum(const Translation& left, const Translation& right) {
  return {modulo(left[0] + right[0]), modulo(left[1] + right[1]), modulo(left[2] + right[2])};
}

int determinant(const Rotation& r) {
  return r[0][0] * (r[1][1] * r[2][2] - r[1][2] * r[2][1]) -
         r[0][1] * (r[1][0] * r[2][2] - r[1][2] * r[2][0]) +
         r[0][2] * (r[1][0] * r[2][1] - r[1][1] * r[2][0]);
}

constexpr Rotation identity = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};

// Of a matrix whose determinant is 1.
Rotation inverse(const Rotation& r) {
  Rotation result{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      const std::size_t a = (j + 1) % 3, b = (j + 2) % 3, c = (i + 1) % 3, d = (i + 2) % 3;
      result[i][j] = r[a][c] * r[b][d] - r[a][d] * r[b][c];
    }
  }
  return result;
}

Group sorted(Group group) {
  std::sort(group.begin(), group.end());
  group.erase(std::unique(group.begin(), group.end()), group.end());
  return group;
}

// What a setting of the table is looked up by.
struct Setting {
  const gemmi::SpaceGroup* row;
  Group group;
};

Group group_of(const gemmi::GroupOps& operations) {
  Group group;
  for (const gemmi::Op& op : operations) {
    Operator own;
    for (std::size_t i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) own.rotation[i][j] = op.rot[i][j] / gemmi::Op::DEN;
      own.translation[i] = modulo(op.tran[i]);
    }
    group.push_back(own);
  }
  return sorted(std::move(group));
}

// Every setting of gemmi's table, the first of those that are the same, in its order. Made once.
struct Table {
  std::vector<Setting> settings;
  std::map<Group, std::size_t> by_group;

  Table() {
    for (const gemmi::SpaceGroup& row : gemmi::spacegroup_tables::main) {
      Group group = group_of(row.operations());
      if (by_group.emplace(group, settings.size()).second) settings.push_back({&row, std::move(group)});
    }
  }
};

const Table& table() {
  static const Table made;
  return made;
}

std::string text_of(const Operator& op) {
  gemmi::Op own;
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) own.rot[i][j] = op.rotation[i][j] * gemmi::Op::DEN;
    own.tran[i] = op.translation[i];
  }
  return own.triplet();
}

// Why the operators are no group; empty where they are one. The product of any two must be there.
std::string objection_to(const Group& group) {
  if (!std::binary_search(group.begin(), group.end(), Operator{identity, {}}))
    return "the identity is missing";
  for (const Operator& left : group) {
    for (const Operator& right : group) {
      const Operator both = {product(left.rotation, right.rotation),
                             sum(product(left.rotation, right.translation), left.translation)};
      if (!std::binary_search(group.begin(), group.end(), both))
        return text_of(left) + " after " + text_of(right) + " is " + text_of(both) + ", which is missing";
    }
  }
  return {};
}

// The rotations, each once, and the pure translations.
struct Parts {
  std::vector<Operator> rotations;  // with one of their translations each
  std::set<Translation> centring;

  explicit Parts(const Group& group) {
    for (const Operator& op : group) {
      if (op.rotation == identity) centring.insert(op.translation);
      if (rotations.empty() || rotations.back().rotation != op.rotation) rotations.push_back(op);
    }
  }
  [[nodiscard]] const Operator* find(const Rotation& rotation) const {
    const auto found =
        std::lower_bound(rotations.begin(), rotations.end(), rotation,
                         [](const Operator& op, const Rotation& wanted) { return op.rotation < wanted; });
    return found != rotations.end() && found->rotation == rotation ? &*found : nullptr;
  }
};

// How many rotations there are of each kind, which no change of axes alters.
std::map<std::pair<int, int>, int> kinds(const Parts& parts) {
  std::map<std::pair<int, int>, int> counts;
  for (const Operator& op : parts.rotations)
    ++counts[{op.rotation[0][0] + op.rotation[1][1] + op.rotation[2][2], determinant(op.rotation)}];
  return counts;
}

// Matrices of -1, 0 and 1 with the determinant 1, the plainest first.
const std::vector<Rotation>& changes_of_axes() {
  static const std::vector<Rotation> made = [] {
    std::vector<Rotation> all;
    for (int code = 0; code < 19683; ++code) {
      Rotation matrix{};
      int rest = code;
      for (auto& row : matrix) {
        for (int& element : row) {
          element = rest % 3 - 1;
          rest /= 3;
        }
      }
      if (determinant(matrix) == 1) all.push_back(matrix);
    }
    const auto weight = [](const Rotation& matrix) {
      int total = 0;
      for (const auto& row : matrix)
        for (const int element : row) total += element * element;
      return total - (matrix == identity ? 1 : 0);
    };
    std::stable_sort(all.begin(), all.end(), [&](const Rotation& left, const Rotation& right) {
      return weight(left) < weight(right);
    });
    return all;
  }();
  return made;
}

// With the origin at p an operator (R, t) becomes (R, t + Rp - p). Whether one p, in twenty-fourths, makes
// the translations those of the setting, up to its centring. A p that suits one operator only is soon given
// up.
bool has_common_origin(const std::vector<std::pair<Operator, Translation>>& wanted,
                       const std::set<Translation>& centring) {
  Translation p{};
  for (p[0] = 0; p[0] < whole; ++p[0]) {
    for (p[1] = 0; p[1] < whole; ++p[1]) {
      for (p[2] = 0; p[2] < whole; ++p[2]) {
        const bool suits = std::all_of(wanted.begin(), wanted.end(), [&](const auto& pair) {
          const auto& [op, translation] = pair;
          const Translation moved = product(op.rotation, p);
          Translation difference{};
          for (std::size_t i = 0; i < 3; ++i)
            difference[i] = modulo(op.translation[i] + moved[i] - p[i] - translation[i]);
          return centring.contains(difference);
        });
        if (suits) return true;
      }
    }
  }
  return false;
}

bool can_be_brought_to(const Parts& parts, const Rotation& change, const Parts& setting) {
  const Rotation back = inverse(change);
  std::set<Translation> centring;
  for (const Translation& translation : parts.centring) centring.insert(product(back, translation));
  if (centring != setting.centring) return false;
  std::vector<std::pair<Operator, Translation>> wanted;
  for (const Operator& op : parts.rotations) {
    const Rotation rotation = product(back, product(op.rotation, change));
    const Operator* const counterpart = setting.find(rotation);
    if (counterpart == nullptr) return false;
    wanted.push_back({{rotation, product(back, op.translation)}, counterpart->translation});
  }
  return has_common_origin(wanted, centring);
}

const gemmi::SpaceGroup* setting_after_change(const Group& group) {
  const Parts parts(group);
  const auto own_kinds = kinds(parts);
  std::vector<std::pair<const gemmi::SpaceGroup*, Parts>> settings;
  for (const Setting& setting : table().settings) {
    if (setting.group.size() != group.size()) continue;
    Parts other(setting.group);
    if (other.centring.size() == parts.centring.size() && kinds(other) == own_kinds)
      settings.emplace_back(setting.row, std::move(other));
  }
  // All settings for one change of axes, so that the plainest change decides.
  for (const Rotation& change : changes_of_axes())
    for (const auto& [row, setting] : settings)
      if (can_be_brought_to(parts, change, setting)) return row;
  return nullptr;
}

}  // namespace

SpaceGroup::SpaceGroup(const std::vector<CrystalSymmetryOperator>& operators) {
  if (operators.empty()) {
    reason_ = "there are no operators";
    return;
  }
  Group group;
  for (const CrystalSymmetryOperator& op : operators) {
    const std::optional<OperatorParts> parts = parts_of(op);
    Operator own;
    bool good = parts.has_value();
    for (std::size_t i = 0; good && i < 3; ++i) {
      const std::optional<int> step = twenty_fourths(parts->translation[i]);
      good = step.has_value();
      if (good) own.translation[i] = *step;
      // A rotation of a lattice in any reasonable setting; larger numbers could overflow in products.
      for (const int element : parts->rotation[i]) good = good && std::abs(element) <= 100;
    }
    if (!good) {
      reason_ = op.xyz() + " is no operator of a crystal whose translations are multiples of 1/24";
      return;
    }
    own.rotation = parts->rotation;
    const int hand = determinant(own.rotation);
    if (hand != 1 && hand != -1) {
      reason_ = op.xyz() + " does not keep the volume";
      return;
    }
    group.push_back(own);
  }
  group = sorted(std::move(group));
  if (group.size() > most_operators) {
    reason_ =
        "there are " + std::to_string(group.size()) + " different operators; no group has more than 192";
    return;
  }
  const gemmi::SpaceGroup* row = nullptr;
  if (const auto found = table().by_group.find(group); found != table().by_group.end()) {
    row = table().settings[found->second].row;
    is_tabulated_ = true;
  } else {
    reason_ = objection_to(group);
    if (!reason_.empty()) {
      reason_ = "the operators are no group: " + reason_;
      return;
    }
    row = setting_after_change(group);
    if (row == nullptr) {
      reason_ = "the operators are a group, but no setting of the tables was found for them";
      return;
    }
  }
  number_ = row->number;
  hermann_mauguin_ = row->xhm();
  hall_ = row->hall;
  crystal_system_ = row->crystal_system_str();
  centring_ = centring_of(operators);
}
