#include "stores/repeated_entries.h"

#include <stores/formula.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace {

constexpr std::array others = {"Li", "Be", "B",  "F",  "Na", "Mg", "Al", "P",  "S",  "Cl", "K",  "Ca", "Sc",
                               "Ti", "V",  "Cr", "Mn", "Fe", "Co", "Ni", "Cu", "Zn", "Ga", "Ge", "As", "Se",
                               "Br", "Rb", "Sr", "Y",  "Zr", "Nb", "Mo", "Ru", "Rh", "Pd", "Ag", "Cd", "In",
                               "Sn", "Sb", "Te", "I",  "Cs", "Ba", "La", "Ce", "Pr", "Nd", "Sm", "Eu", "Gd",
                               "Tb", "Dy", "Ho", "Er", "Hf", "Ta", "W",  "Re", "Os", "Ir", "Pt", "Au"};

// Spread over all values, the same everywhere.
std::uint64_t mixed(std::uint64_t value) {
  value = (value ^ value >> 31U) * 0x9E3779B97F4A7C15U;
  value = (value ^ value >> 27U) * 0xBF58476D1CE4E5B9U;
  return value ^ value >> 33U;
}

bool stays(std::string_view symbol) {
  return symbol == "H" || symbol == "C" || symbol == "N" || symbol == "O";
}

// The first of the atoms that is replaced; empty where all stay.
std::string replaced_element(const std::vector<THandle<Atom>>& atoms) {
  for (const auto& atom : atoms) {
    if (!stays(atom->element)) return atom->element;
  }
  return "";
}

std::string with_replaced(const std::string& formula, const std::string& old, const std::string& other) {
  auto elements = parse_formula(formula);
  if (!elements || old.empty()) return formula;
  const auto same = [&](const std::string& symbol) {
    return [&symbol](const ElementCount& element) { return element.symbol == symbol; };
  };
  const auto found = std::find_if(elements->begin(), elements->end(), same(old));
  const auto there = std::find_if(elements->begin(), elements->end(), same(other));
  if (found == elements->end() || there != elements->end()) return formula;
  found->symbol = other;
  return hill_text(*elements, " ");
}

}  // namespace

RepeatedEntries::RepeatedEntries(const std::string& archive) {
  const auto store = open_entry_store(archive);
  for (const DatabaseEntryIdentifier& identifier : store->select({}))
    published_.push_back(store->entry(identifier));
}

std::string RepeatedEntries::identifier(std::size_t index) const {
  const std::string number = std::to_string(index / published_.size());
  return published_[index % published_.size()]->identifier().text() + '-' +
         std::string(number.size() < 4 ? 4 - number.size() : 0, '0') + number;
}

CrystalStructureImmediateDatabaseEntry RepeatedEntries::entry(std::size_t index) const {
  CrystalStructureImmediateDatabaseEntry entry = *published_[index % published_.size()];
  const std::uint64_t chance = mixed(index + 1);
  const THandle<CrystalMaker> crystal = entry.crystal_maker();
  const double scale = 0.9 + 0.2 * static_cast<double>(chance % 10'007) / 10'007;
  const auto scaled = [&](const Cell& cell) {
    return THandle<Cell>(new Cell(scale * cell.a(), scale * cell.b(), scale * cell.c(), cell.alpha(),
                                  cell.beta(), cell.gamma(), cell.symmetry_operators()));
  };
  const std::string old = replaced_element(crystal->atoms());
  const std::string other = others[chance / 10'007 % others.size()];
  std::vector<THandle<Atom>> atoms = crystal->atoms();
  for (THandle<Atom>& atom : atoms) {
    if (atom->element != old) continue;
    atom = THandle<Atom>(new Atom(*atom));
    atom->element = other;
  }
  const THandle<ChemicalInfo> chemical(new ChemicalInfo(*entry.chemical_info()));
  chemical->formula = with_replaced(chemical->formula, old, other);
  const THandle<Publication> publication(new Publication(*entry.publication()));
  publication->year = 1920 + static_cast<int>(chance / 1'000'003 % 100);
  const THandle<Cell> cell = scaled(*crystal->cell());
  ComponentHandles handles;
  for_each_component([&](auto component) { handles[component] = component.get(entry); });
  handles[component_row<ComponentKind::crystal_maker>] =
      THandle<CrystalMaker>(new CrystalMaker(cell, std::move(atoms)));
  handles[component_row<ComponentKind::cell>] = cell;
  handles[component_row<ComponentKind::publication>] = publication;
  handles[component_row<ComponentKind::chemical_info>] = chemical;
  return CrystalStructureImmediateDatabaseEntry::from(DatabaseEntryIdentifier(identifier(index)), handles);
}

void RepeatedEntries::put(EntryStore& store, std::size_t begin, std::size_t end) const {
  constexpr std::size_t together = 500;
  for (std::size_t first = begin; first < end; first += together) {
    std::vector<CrystalStructureImmediateDatabaseEntry> entries;
    std::vector<EntryStore::Put> puts;
    for (std::size_t index = first; index < std::min(first + together, end); ++index)
      entries.push_back(entry(index));
    for (const auto& one : entries)
      puts.push_back({&one, {one.identifier().text() + ".cif", one.identifier().text()}});
    static_cast<void>(store.put_all(puts, OnDuplicate::refuse));
  }
}
