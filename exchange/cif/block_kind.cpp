#include "exchange/cif/block_kind.h"

#include <algorithm>
#include <initializer_list>

#include "exchange/cif/tag_index.h"
#include "exchange/cif/tags.h"

namespace {

bool has(const CifBlock& block, CifTag tag) {
  return block.column(static_cast<std::size_t>(tag)).has_value();
}

bool has_any(const CifBlock& block, std::initializer_list<CifTag> tags) {
  return std::any_of(tags.begin(), tags.end(), [&](CifTag tag) { return has(block, tag); });
}

}  // namespace

CifBlockKind kind_of(const CifBlock& block) {
  const std::vector<CifOtherTag>& others = block.other_tags();
  const auto is_identifier = [](const CifOtherTag& other) {
    return same_cif_tag(other.tag, "_dbentry_identifier");
  };
  if (std::any_of(others.begin(), others.end(), is_identifier)) return CifBlockKind::structure;
  const bool has_atoms = has_any(block, {tag("_atom_site_fract_x"), tag("_atom_site_label")}) &&
                         (has(block, tag("_atom_site_fract_x")) || !has(block, tag("_atom_site_Cartn_x")));
  const bool has_cell = has_any(block, {tag("_cell_length_a"), tag("_cell_length_b"), tag("_cell_length_c")});
  const bool defines_a_tag = has(block, tag("_name")) && has(block, tag("_category"));
  if (has_any(block, {tag("_dictionary_name"), tag("_dictionary_title"), tag("_definition_id")}) ||
      (defines_a_tag && !has_cell))
    return CifBlockKind::dictionary;
  if (has_atoms) return CifBlockKind::structure;
  if (has(block, tag("_atom_site_Cartn_x"))) return CifBlockKind::macromolecule;
  if (has_any(block, {tag("_refln_index_h"), tag("_refln_h"), tag("_diffrn_refln_index_h")}))
    return CifBlockKind::structure_factors;
  if (has_any(block, {tag("_chem_comp_id"), tag("_chem_comp_atom_comp_id")}) && !has_cell)
    return CifBlockKind::monomer_library;
  if (has(block, tag("_entry_id"))) return CifBlockKind::macromolecule;
  if (has_cell) return CifBlockKind::structure;
  return block.has_frames() ? CifBlockKind::dictionary : CifBlockKind::shared;
}

const char* reason_for_no_entry(CifBlockKind kind) {
  switch (kind) {
    case CifBlockKind::dictionary:
      return "a dictionary, which defines tags";
    case CifBlockKind::monomer_library:
      return "a monomer library, which describes residues";
    case CifBlockKind::macromolecule:
      return "mmCIF, a macromolecule without atoms in fractions of the cell";
    case CifBlockKind::structure_factors:
      return "structure factors: reflections and no atoms";
    case CifBlockKind::structure:
    case CifBlockKind::shared:
      break;
  }
  return "neither a cell nor atoms";
}

bool says_anything(const CifBlock& block) {
  constexpr CifTagRange kinds = field("kind");
  for (std::size_t tag = 0; tag < cif_tag_count; ++tag) {
    const bool is_kind = tag >= kinds.begin && tag < kinds.end;
    if (!is_kind && block.column(tag).has_value()) return true;
  }
  return false;
}
