#include <perception/elements.h>
#include <perception/molecules.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <deque>
#include <map>
#include <numeric>
#include <optional>

namespace {

using Steps = std::array<int, 3>;

Steps sum(const Steps& left, const Steps& right) {
  return {left[0] + right[0], left[1] + right[1], left[2] + right[2]};
}
Steps difference(const Steps& left, const Steps& right) {
  return {left[0] - right[0], left[1] - right[1], left[2] - right[2]};
}

// The rank of translations that are added one by one, by whole-number elimination.
class Rank {
 public:
  void add(Steps vector) {
    for (const Steps& row : rows_) {
      const auto pivot = static_cast<std::size_t>(
          std::find_if(row.begin(), row.end(), [](int step) { return step != 0; }) - row.begin());
      const long long factor = vector[pivot];
      const long long by = row[pivot];
      std::array<long long, 3> rest{};
      long long divisor = 0;
      for (std::size_t i = 0; i < 3; ++i) {
        rest[i] = vector[i] * by - row[i] * factor;
        divisor = std::gcd(divisor, rest[i]);
      }
      for (std::size_t i = 0; i < 3; ++i) vector[i] = divisor == 0 ? 0 : static_cast<int>(rest[i] / divisor);
    }
    if (vector != Steps{}) rows_.push_back(vector);
  }
  [[nodiscard]] int rank() const { return static_cast<int>(rows_.size()); }

 private:
  std::vector<Steps> rows_;  // each has a 0 at the pivots of those before it
};

struct Link {
  std::size_t other;
  Steps translation;
  std::size_t bond;
};

std::string count_text(double count) {
  const double rounded = std::round(count * 100.0) / 100.0;
  if (std::abs(rounded - 1.0) < 1e-9) return {};
  std::string text = std::to_string(rounded);  // six decimals
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

}  // namespace

std::string hill_formula(const std::vector<std::pair<std::string, double>>& counts) {
  std::map<std::string, double> sums;
  for (const auto& [element, count] : counts) sums[element == "D" ? "H" : element] += count;
  std::string formula;
  const auto append = [&](const std::string& element, double count) {
    if (count < 0.005) return;
    if (!formula.empty()) formula += ' ';
    formula += element + count_text(count);
  };
  if (const auto carbon = sums.find("C"); carbon != sums.end()) {
    append("C", carbon->second);
    sums.erase(carbon);
    if (const auto hydrogen = sums.find("H"); hydrogen != sums.end()) {
      append("H", hydrogen->second);
      sums.erase(hydrogen);
    }
  }
  for (const auto& [element, count] : sums) append(element, count);
  return formula;
}

namespace {

// Element symbols, counts and brackets, read from left to right.
class FormulaReader {
 public:
  explicit FormulaReader(const std::string& text) : text_(text) {}

  std::optional<std::map<std::string, double>> read() {
    std::map<std::string, double> counts = sequence(0);
    if (failed_ || at_ != text_.size()) return std::nullopt;
    return counts;
  }

 private:
  // Until the closing bracket or the end. A number before anything else multiplies what follows up to the
  // next comma.
  std::map<std::string, double> sequence(int depth) {
    std::map<std::string, double> total;
    double factor = 1.0;
    bool fresh = true;
    while (at_ < text_.size() && !failed_) {
      const char c = text_[at_];
      if (c == ' ' || c == ',' || c == '.' || c == '*' || c == '\t') {
        if (c != ' ' && c != '\t') {
          factor = 1.0;
          fresh = true;
        }
        ++at_;
      } else if (c == '(' || c == '[' || c == '{') {
        if (depth > 20) failed_ = true;
        ++at_;
        std::map<std::string, double> inner = sequence(depth + 1);
        if (at_ >= text_.size()) {
          failed_ = true;
        } else {
          ++at_;
          const double times = number().value_or(1.0) * factor;
          for (const auto& [element, count] : inner) total[element] += count * times;
        }
        fresh = false;
      } else if (c == ')' || c == ']' || c == '}') {
        if (depth == 0) failed_ = true;
        return total;
      } else if (is_digit(c)) {
        const std::optional<double> value = number();
        // "2+" and "1-" are charges.
        if (at_ < text_.size() && (text_[at_] == '+' || text_[at_] == '-')) {
          ++at_;
        } else if (fresh && value) {
          factor = *value;
        } else {
          failed_ = true;
        }
      } else if (c == '+' || c == '-') {
        ++at_;
        (void)number();
      } else {
        const std::string element = symbol();
        total[element] += number().value_or(1.0) * factor;
        fresh = false;
      }
    }
    if (depth > 0 && at_ >= text_.size()) failed_ = true;
    return total;
  }

  std::string symbol() {
    if (text_[at_] < 'A' || text_[at_] > 'Z') {
      failed_ = true;
      return {};
    }
    std::string name(1, text_[at_++]);
    if (at_ < text_.size() && text_[at_] >= 'a' && text_[at_] <= 'z') name += text_[at_++];
    if (atomic_number(name) == 0) failed_ = true;
    return name;
  }

  std::optional<double> number() {
    const std::size_t start = at_;
    while (at_ < text_.size() && (is_digit(text_[at_]) ||
                                  (text_[at_] == '.' && at_ + 1 < text_.size() && is_digit(text_[at_ + 1]))))
      ++at_;
    if (at_ == start || at_ - start > 12) {
      failed_ = failed_ || at_ != start;
      return std::nullopt;
    }
    // Digits and at most the points between them: the first number of these is meant.
    return std::strtod(text_.substr(start, at_ - start).c_str(), nullptr);
  }

  static bool is_digit(char c) { return c >= '0' && c <= '9'; }

  const std::string& text_;
  std::size_t at_ = 0;
  bool failed_ = false;
};

}  // namespace

std::vector<std::pair<std::string, double>> formula_counts(const std::string& formula) {
  const auto counts = FormulaReader(formula).read();
  if (!counts) return {};
  return {counts->begin(), counts->end()};
}

std::vector<Molecule> molecules(const CrystalMaker& crystal, const CrystalBonds& bonds,
                                const std::vector<bool>& hidden) {
  const std::vector<PackedAtom>& atoms = bonds.packed.atoms();
  const auto is_hidden = [&](std::size_t atom) {
    return atoms[atom].site < hidden.size() && hidden[atoms[atom].site];
  };
  std::vector<std::vector<Link>> links(atoms.size());
  for (std::size_t i = 0; i < bonds.bonds.size(); ++i) {
    const CrystalBond& bond = bonds.bonds[i];
    if (is_hidden(bond.first) || is_hidden(bond.second)) continue;
    links[bond.first].push_back({bond.second, bond.translation, i});
    links[bond.second].push_back({bond.first, difference({}, bond.translation), i});
  }
  constexpr std::size_t unseen = static_cast<std::size_t>(-1);
  std::vector<std::size_t> position(atoms.size(), unseen);  // in the atoms of its molecule
  std::vector<Molecule> list;
  for (std::size_t start = 0; start < atoms.size(); ++start) {
    if (position[start] != unseen || is_hidden(start)) continue;
    Molecule molecule;
    Rank rank;
    position[start] = 0;
    molecule.atoms.push_back({start, {}, {}});
    for (std::size_t next = 0; next < molecule.atoms.size(); ++next) {
      const MoleculeAtom from = molecule.atoms[next];
      for (const Link& link : links[from.atom]) {
        const Steps reached = sum(from.translation, link.translation);
        if (position[link.other] == unseen) {
          position[link.other] = molecule.atoms.size();
          molecule.atoms.push_back({link.other, reached, {}});
        }
        const std::size_t to = position[link.other];
        const Steps around = difference(reached, molecule.atoms[to].translation);
        if (around != Steps{} && rank.rank() < 3) rank.add(around);
        // Each bond is met from both ends; the end that the crystal names first tells it.
        const CrystalBond& bond = bonds.bonds[link.bond];
        if (bond.first == from.atom && bond.translation == link.translation)
          molecule.bonds.push_back({next, to, around});
      }
    }
    molecule.dimension = rank.rank();
    std::vector<std::pair<std::string, double>> counts;
    for (MoleculeAtom& atom : molecule.atoms) {
      const PackedAtom& packed = atoms[atom.atom];
      const auto& [x, y, z] = packed.position;
      atom.place = bonds.packed.geometry().cartesian(
          {x + atom.translation[0], y + atom.translation[1], z + atom.translation[2]});
      molecule.sites.push_back(packed.site);
      const Atom& site = *crystal.atoms()[packed.site];
      counts.emplace_back(site.element.empty() ? "X" : site.element,
                          std::isfinite(site.occupancy) ? site.occupancy : 0.0);
    }
    std::sort(molecule.sites.begin(), molecule.sites.end());
    molecule.formula = hill_formula(counts);
    list.push_back(std::move(molecule));
  }
  return list;
}

std::vector<MoleculeCount> independent_molecules(const std::vector<Molecule>& list) {
  std::map<std::vector<std::size_t>, std::size_t> places;
  std::vector<MoleculeCount> independent;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const auto [place, is_new] = places.emplace(list[i].sites, independent.size());
    if (is_new) independent.push_back({i, 0});
    ++independent[place->second].in_cell;
  }
  return independent;
}
