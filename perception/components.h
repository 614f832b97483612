// What an entry's atoms say of its other components: connectivity, diagram, the matches, disorder, category.
//
//   const PerceivedEntry perceived = perceive_components(entry);
//   perceived.entry.connectivity_info()->print(std::cout);
//   for (const std::string& note : perceived.report.notes) std::cout << note << '\n';
//
// What an entry has stays: a connectivity with atoms, a diagram, a category. What it has not, or what was
// perceived before, is made from the atoms. The connectivity holds one of each molecule that no symmetry
// operator makes from another one; that it was perceived is told by EditorsInfo::connectivity_comment. In
// ionic and framework solids there are no molecules and no connectivity, unless it is asked for; alkali and
// alkaline earth ions in a salt of molecules are atoms without bonds. Of alternatives of a disorder the one
// that is taken most counts.
// Fails: nothing that an entry holds makes it throw; where a crystal cannot be packed or has no atoms, the
// notes say why. Time, without the drawing, is in proportion to atoms and operators.
#pragma once

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <perception/export.h>

#include <cstddef>
#include <string>
#include <vector>

struct PerceptionOptions {
  bool draw = true;
  std::size_t most_drawn_atoms = 60;  // of one molecule; a drawing takes seconds for some hundred
  bool frameworks = false;            // a connectivity for what is not made of molecules too
};

// A kind of molecule, chain, layer or framework: those with the same formula.
struct PerceivedMoiety {
  std::string formula;  // "C6 H6"
  int dimension = 0;    // 0 for molecules and ions, 1 for chains, 2 for layers, 3 for frameworks
  std::size_t in_cell = 0;
};

struct PerceptionReport {
  std::vector<std::string> filled;  // the names of the components that were made, "connectivity_info"
  std::vector<std::string> notes;   // what was not made, and why
  std::vector<PerceivedMoiety> moieties;
  std::size_t bonds = 0;  // of one cell
  // Formula units in the cell, and for each operator; 0.0 where not all is made of molecules.
  double z = 0.0;
  double z_prime = 0.0;
};

struct PerceivedEntry {
  CrystalStructureImmediateDatabaseEntry entry;
  PerceptionReport report;
};

[[nodiscard]] PERCEPTION_EXPORT PerceivedEntry perceive_components(const CrystalStructureDatabaseEntry& entry,
                                                                   const PerceptionOptions& options = {});

// What the comment of a perceived connectivity holds.
inline constexpr const char* perceived_comment = "perceived from the positions of the atoms";

// What is wrong with a match: a text for each pair whose elements or neighbours differ; empty for a good
// match.
[[nodiscard]] PERCEPTION_EXPORT std::vector<std::string> objections_to(const CrystalConnectivityMatch& match);
[[nodiscard]] PERCEPTION_EXPORT std::vector<std::string> objections_to(const ConnectivityDiagramMatch& match);
[[nodiscard]] PERCEPTION_EXPORT std::vector<std::string> objections_to(const CrystalDiagramMatch& match);
