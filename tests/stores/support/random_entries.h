// Whole entries whose derived columns differ, for stores to be asked about.
#pragma once

#include <stores/entry_store.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/sample_entry.h"

// All of them can be archived. Some have nothing in their publication or their formula; some cells are a
// setting of another's. The identifiers differ.
[[nodiscard]] inline std::vector<CrystalStructureImmediateDatabaseEntry> random_entries(std::size_t count,
                                                                                        std::uint64_t seed) {
  std::mt19937_64 engine(seed);
  const auto below = [&](std::size_t limit) { return engine() % limit; };
  const auto one_of = [&](const std::vector<std::string>& texts) { return texts[below(texts.size())]; };
  const std::vector<std::string> formulas = {"O2 Ti",      "C12 H10 O2", "C12 H10 O2, 2(H2 O)",
                                             "Si O2",      "Fe1.5 O3",   "",
                                             "unreadable", "C6 H5 Cl",   "D2 O"};
  const std::vector<std::string> authors = {"R.W.G.Wyckoff", "W\xC3\xB6hler, F.", "A.O'Brien",
                                            "J.D.van der Waals"};
  const std::vector<std::string> names = {"rutile", "Rutile", "quartz, low", "it's \"quoted\"", "x", ""};
  const auto operators = handle_to(std::vector<CrystalSymmetryOperator>(1));
  std::vector<CrystalStructureImmediateDatabaseEntry> entries;
  for (std::size_t index = 0; index < count; ++index) {
    auto entry = sample_entry();
    entry.set_identifier(DatabaseEntryIdentifier(one_of(names) + std::to_string(index)));
    if (below(4) != 0) {
      const double a = 4.0 + 0.02 * static_cast<double>(below(4));
      const double b = 5.0 + 0.02 * static_cast<double>(below(4));
      const auto cell = below(2) == 0 ? handle_to(Cell(a, b, 6.0, 90, 90, 90, operators))
                                      : handle_to(Cell(b, 6.0, a, 90, 90, 90, operators));
      entry = CrystalStructureImmediateDatabaseEntry(
          entry.identifier(), handle_to(CrystalMaker(cell)), cell, entry.publication(),
          entry.experimental_info(), entry.editors_info(), entry.chemical_info(), entry.crystal_info(), {},
          entry.connectivity_info(), {}, {}, {}, entry.cross_reference_info(), entry.deposition_info(), {},
          {});
    }
    ChemicalInfo chemical;
    chemical.formula = one_of(formulas);
    chemical.name = one_of(names);
    if (below(2) == 0) chemical.synonyms = {one_of(names), one_of(names)};
    entry.set_chemical_info(handle_to(chemical));
    ExperimentalInfo experimental;
    experimental.temperature = below(2) == 0 ? 0.0 : 100.0 + static_cast<double>(below(3)) * 50.0;
    experimental.r_factor = 0.01 * static_cast<double>(below(5));
    entry.set_experimental_info(handle_to(experimental));
    std::vector<std::string> published = {one_of(authors)};
    if (below(2) == 0) published.push_back(one_of(authors));
    entry.set_publication(
        below(5) == 0 ? handle_to(Publication({}, Journal(1419), "", 0, ""))
                      : handle_to(Publication(published, Journal(1 + static_cast<int>(below(5))),
                                              std::to_string(below(9)), 1958 + static_cast<int>(below(5)),
                                              one_of({"1", "12", "B3"}))));
    entries.push_back(entry);
  }
  return entries;
}
