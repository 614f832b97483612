#include "exchange/cif/space_group_names.h"

#include <algorithm>
#include <cmath>
#include <gemmi/symmetry.hpp>
#include <map>
#include <string_view>

#include "exchange/cif/letters.h"
#include "exchange/cif/readable_text.h"

namespace {

using gemmi::SpaceGroup;

bool is_about(double one, double other) {
  return std::abs(one - other) < 0.01 * std::max(1.0, other);
}

bool is_right(double angle) {
  return std::abs(angle - 90.0) < 0.1;
}

// Which angle of a monoclinic setting is not a right one: 'a', 'b' or 'c' for its axis.
char unique_axis(const SpaceGroup& group) {
  return group.qualifier[0] == '-' ? group.qualifier[1] : group.qualifier[0];
}

bool is_known(const Cell& cell) {
  return cell.a() > 0 && cell.b() > 0 && cell.c() > 0 && cell.alpha() > 0 && cell.beta() > 0 &&
         cell.gamma() > 0;
}

bool is_hexagonal(const Cell& cell) {
  return is_about(cell.a(), cell.b()) && is_right(cell.alpha()) && is_right(cell.beta()) &&
         std::abs(cell.gamma() - 120.0) < 0.1;
}

// Whether the cell has the shape that the setting asks for. Nothing is asked of an unknown cell.
bool fits(const SpaceGroup& group, const Cell& cell) {
  if (!is_known(cell)) return true;
  const bool alpha = is_right(cell.alpha());
  const bool beta = is_right(cell.beta());
  const bool gamma = is_right(cell.gamma());
  switch (group.crystal_system()) {
    case gemmi::CrystalSystem::Triclinic:
      return true;
    case gemmi::CrystalSystem::Monoclinic:
      switch (unique_axis(group)) {
        case 'a':
          return beta && gamma;
        case 'c':
          return alpha && beta;
        default:
          return alpha && gamma;
      }
    case gemmi::CrystalSystem::Orthorhombic:
      return alpha && beta && gamma;
    case gemmi::CrystalSystem::Tetragonal:
      return alpha && beta && gamma && is_about(cell.a(), cell.b());
    case gemmi::CrystalSystem::Trigonal:
    case gemmi::CrystalSystem::Hexagonal:
      if (group.ext != 'R') return is_hexagonal(cell);
      return is_about(cell.a(), cell.b()) && is_about(cell.b(), cell.c()) &&
             is_about(cell.alpha(), cell.beta()) && is_about(cell.beta(), cell.gamma());
    case gemmi::CrystalSystem::Cubic:
      return alpha && beta && gamma && is_about(cell.a(), cell.b()) && is_about(cell.b(), cell.c());
  }
  return true;
}

// A name without what people write in many ways: "P 21/c" is "p21/c".
std::string key_of(std::string_view name) {
  std::string key;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const std::string_view rest = name.substr(i);
    if (rest.substr(0, 5) == "<sub>") {
      i += 4;
    } else if (rest.substr(0, 6) == "</sub>") {
      i += 5;
    } else if (std::string_view(" \t_~()'\"").find(name[i]) == std::string_view::npos) {
      key += name[i];
    }
  }
  return lower_case(key);
}

// "p1211" for "P 1 21 1" is "p21" too.
std::string short_monoclinic_key(const SpaceGroup& group) {
  const std::string hm = group.hm;
  std::string key(1, hm[0]);
  std::size_t begin = 2;
  while (begin < hm.size()) {
    const std::size_t end = std::min(hm.find(' ', begin), hm.size());
    const std::string part = hm.substr(begin, end - begin);
    if (part != "1") key += part;
    begin = end + 1;
  }
  return lower_case(key);
}

using Groups = std::map<std::string, std::vector<const SpaceGroup*>, std::less<>>;

Groups made_groups() {
  Groups groups;
  const auto add = [&](const std::string& key, const SpaceGroup& group) {
    std::vector<const SpaceGroup*>& same = groups[key];
    if (std::find(same.begin(), same.end(), &group) == same.end()) same.push_back(&group);
  };
  const auto add_name = [&](std::string name, const SpaceGroup& group) {
    add(key_of(name), group);
    if (group.crystal_system() != gemmi::CrystalSystem::Cubic) return;
    name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
    // "P -4 3 m" keeps its minus: without it that is no group, and "P 4 3 m" none either.
    if (std::string_view(group.hm).find("-4") == std::string_view::npos) add(key_of(name), group);
  };
  for (const SpaceGroup& group : gemmi::spacegroup_tables::main) add_name(group.hm, group);
  for (const auto& other : gemmi::spacegroup_tables::alt_names)
    add_name(other.hm, gemmi::spacegroup_tables::main[other.pos]);
  // Full names first, so that "P 2" and the like never hide one.
  for (const SpaceGroup& group : gemmi::spacegroup_tables::main) {
    if (group.crystal_system() != gemmi::CrystalSystem::Monoclinic) continue;
    add(short_monoclinic_key(group), group);
  }
  return groups;
}

// A name, and what is written after it to tell the setting.
struct Written {
  std::string key;
  std::string setting;  // in lower case
};

Written written(const std::string& name) {
  const std::size_t end = std::min(name.find(':'), name.find('{'));
  Written result = {key_of(name.substr(0, end)), ""};
  if (end != std::string::npos) result.setting = lower_case(key_of(name.substr(end)));
  return result;
}

// Whether the words after a name ask for this setting.
bool is_asked_for(const SpaceGroup& group, const std::string& setting) {
  const std::string ext = lower_case(std::string(1, group.ext));
  if (group.ext != 0 && (setting == ":" + ext || setting == ext)) return true;
  if (setting == ":" + lower_case(group.qualifier)) return true;
  if (setting.find("rhombohedral") != std::string::npos) return group.ext == 'R';
  if (setting.find("hexagonal") != std::string::npos) return group.ext == 'H';
  if (setting.find("origin") == std::string::npos) return false;
  return group.ext != 0 && setting.find(group.ext) != std::string::npos;
}

NamedSpaceGroup named(const SpaceGroup& group, const Cell& cell) {
  NamedSpaceGroup result;
  for (const gemmi::Op& op : group.operations()) {
    result.operators.emplace_back(op.triplet());
  }
  result.name = group.xhm();
  result.number = group.number;
  result.fits_cell = fits(group, cell);
  return result;
}

NamedSpaceGroup best(const std::vector<const SpaceGroup*>& groups, const std::string& setting,
                     const Cell& cell) {
  if (groups.empty()) return {};
  const auto asked = std::find_if(groups.begin(), groups.end(),
                                  [&](const SpaceGroup* group) { return is_asked_for(*group, setting); });
  if (!setting.empty() && asked != groups.end()) return named(**asked, cell);
  // Rhombohedral axes come after hexagonal ones in the tables, and are taken for equal angles alone.
  const auto fitting = std::find_if(groups.begin(), groups.end(), [&](const SpaceGroup* group) {
    return fits(*group, cell) && (group->ext != 'R' || is_known(cell));
  });
  const SpaceGroup& group = fitting == groups.end() ? *groups.front() : **fitting;
  NamedSpaceGroup result = named(group, cell);
  result.origin_is_a_guess = group.ext == '1';
  return result;
}

// What databases append to the name of a setting: "F d -3 m Z" has its second origin, "R -3 m H" hexagonal
// axes.
std::string setting_of_suffix(char suffix) {
  switch (suffix) {
    case 's':
      return ":1";
    case 'z':
      return ":2";
    case 'h':
      return ":h";
    case 'r':
      return ":r";
    default:
      return "";
  }
}

}  // namespace

NamedSpaceGroup find_space_group(const std::string& name, const Cell& cell) {
  static const Groups groups = made_groups();
  Written asked = written(name);
  if (asked.key.empty()) return {};
  if (asked.key.find_first_not_of("0123456789") == std::string::npos) {
    return asked.key.size() > 3 ? NamedSpaceGroup() : find_space_group(std::stoi(asked.key), cell);
  }
  auto found = groups.find(asked.key);
  if (found == groups.end()) {
    const std::string setting = setting_of_suffix(asked.key.back());
    if (!setting.empty()) {
      found = groups.find(asked.key.substr(0, asked.key.size() - 1));
      asked.setting = setting;
    }
  }
  // "H 3 2" is "R 3 2" on hexagonal axes.
  if (found == groups.end() && asked.key[0] == 'h') {
    found = groups.find("r" + asked.key.substr(1));
    asked.setting = ":h";
  }
  return found == groups.end() ? NamedSpaceGroup() : best(found->second, asked.setting, cell);
}

NamedSpaceGroup find_space_group(int number, const Cell& cell) {
  std::vector<const SpaceGroup*> groups;
  for (const SpaceGroup& group : gemmi::spacegroup_tables::main) {
    if (group.number == number) groups.push_back(&group);
  }
  return best(groups, "", cell);
}

// The names of the tables only: any other text can make the reader of Hall names write outside its variables
// ("P 3 21") or take memory without bound ("P 1 (x/24,y/24,z/24)").
NamedSpaceGroup find_space_group_by_hall(const std::string& name) {
  std::string plain = name;
  std::replace(plain.begin(), plain.end(), '_', ' ');
  const std::string asked = lower_case(one_line(plain));
  for (const SpaceGroup& group : gemmi::spacegroup_tables::main) {
    if (asked == lower_case(group.hall)) return named(group, Cell());
  }
  return {};
}
