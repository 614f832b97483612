#include <perception/bonds.h>
#include <perception/disorder.h>

#include <algorithm>
#include <map>
#include <string>

namespace {

struct Group {
  std::vector<std::size_t> sites;
  double occupancy = 0.0;
};

void hide_groups(const CrystalMaker& crystal, const std::vector<THandle<DisorderSelector>>& selectors,
                 std::vector<bool>& hidden) {
  std::map<const Atom*, std::size_t> places;
  for (std::size_t site = 0; site < crystal.atoms().size(); ++site)
    places[crystal.atoms()[site].get()] = site;
  // Groups in the order in which they are named.
  std::map<std::string, std::vector<std::pair<std::string, Group>>> assemblies;
  for (const THandle<DisorderSelector>& selector : selectors) {
    if (selector.is_null()) continue;
    auto& groups = assemblies[selector->assembly];
    auto group = std::find_if(groups.begin(), groups.end(),
                              [&](const auto& named) { return named.first == selector->group; });
    if (group == groups.end()) group = groups.insert(groups.end(), {selector->group, {}});
    for (const THandle<Atom>& atom : selector->atoms) {
      const auto place = places.find(atom.get());
      if (place == places.end()) continue;
      group->second.sites.push_back(place->second);
      group->second.occupancy += atom->occupancy;
    }
  }
  for (const auto& [assembly, groups] : assemblies) {
    const auto mean = [](const Group& group) {
      return group.sites.empty() ? 0.0 : group.occupancy / static_cast<double>(group.sites.size());
    };
    const auto most = std::max_element(
        groups.begin(), groups.end(),
        [&](const auto& left, const auto& right) { return mean(left.second) < mean(right.second); });
    for (auto group = groups.begin(); group != groups.end(); ++group)
      if (group != most)
        for (const std::size_t site : group->second.sites) hidden[site] = true;
  }
}

void hide_overlaps(const CrystalMaker& crystal, const PackedCrystal& packed, std::vector<bool>& hidden) {
  const bool partial = std::any_of(crystal.atoms().begin(), crystal.atoms().end(),
                                   [](const THandle<Atom>& atom) { return atom->occupancy < 0.999; });
  if (!partial) return;
  std::vector<double> reaches;
  for (const PackedAtom& atom : packed.atoms())
    reaches.push_back(0.5 * bonding_radius(crystal.atoms()[atom.site]->element));
  for (const CrystalBond& pair : neighbours(packed, reaches)) {
    const std::size_t first = packed.atoms()[pair.first].site;
    const std::size_t second = packed.atoms()[pair.second].site;
    if (first == second) continue;
    const double one = crystal.atoms()[first]->occupancy;
    const double other = crystal.atoms()[second]->occupancy;
    if (one >= 0.999 && other >= 0.999) continue;
    hidden[one > other || (one == other && first < second) ? second : first] = true;
  }
}

}  // namespace

std::vector<bool> sites_not_shown(const CrystalMaker& crystal, const PackedCrystal& packed,
                                  const std::vector<THandle<DisorderSelector>>& selectors) {
  std::vector<bool> hidden(crystal.atoms().size());
  if (selectors.empty()) {
    hide_overlaps(crystal, packed, hidden);
  } else {
    hide_groups(crystal, selectors, hidden);
  }
  return hidden;
}
