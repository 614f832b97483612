// The CIF tags that mean something here: one table, from which reading, writing and the pages are made.
// Internal: callers want exchange/cif_reader.h or exchange/cif_tags.h.
//
//   values.first(field("publication.volume"))    // its tags in the order in which they are preferred
//   values.column(tag("_citation_id"))           // does not compile for a tag that is not in the table
#pragma once

#include <exchange/cif_tags.h>

#include <cstddef>
#include <string_view>

// The rows of the table that tell of one field.
struct CifTagRange {
  std::size_t begin = 0;
  std::size_t end = 0;
};

// The position of a tag in the table.
enum class CifTag : std::size_t {};

// clang-format off
inline constexpr CifTagRow cif_tag_rows[] = {
    // Identifiers and codes.
    {"_cod_database_code", "cod_code"},
    {"_amcsd_database_code", "amcsd_code"},
    {"_database_code_amcsd", "amcsd_code"},
    {"_database_code_ICSD", "icsd_code"},
    {"_database_code_CSD", "csd_code"},
    {"_database_code_PDF", "pdf_code"},
    {"_database_code_MDF", "mdf_code"},
    {"_database_code_depnum_ccdc_journal", "journal_depository_code"},
    {"_journal_coeditor_code", "deposition_info.iucr_coeditor_code"},
    {"_database_code_depnum_ccdc_archive", "deposition_info.archive"},
    {"_database_code_depnum_ccdc_fiz", "deposition_info.fiz"},
    {"_database_code_NBS", "deposition_info.nbs_id"},
    // The publication.
    {"_publ_author_name", "publication.authors"},
    {"_journal_coden_ASTM", "journal_coden"},
    {"_journal_name_full", "journal_name"},
    {"_journal_name_abbrev", "journal_name"},
    {"_journal_volume", "publication.volume"},
    {"_journal_year", "publication.year"},
    {"_journal_page_first", "publication.page"},
    {"_journal_article_reference", "publication.page"},
    {"_journal_paper_number", "publication.page"},
    {"_citation_id", "citation_id"},
    {"_citation_author_citation_id", "citation_authors"},
    {"_citation_author_name", "citation_authors"},
    {"_citation_journal_id_ASTM", "citation_coden"},
    {"_citation_journal_full", "citation_journal"},
    {"_citation_journal_abbrev", "citation_journal"},
    {"_citation_journal_volume", "citation_volume"},
    {"_citation_year", "citation_year"},
    {"_citation_page_first", "citation_page"},
    // The compound.
    {"_chemical_formula_sum", "chemical_info.formula"},
    {"_chemical_formula_moiety", "chemical_info.formula"},
    {"_chemical_formula_structural", "chemical_info.formula"},
    {"_chemical_name_systematic", "chemical_info.name"},
    {"_chemical_name_common", "chemical_info.name"},
    {"_chemical_name_mineral", "chemical_info.name"},
    {"_chemical_compound_source", "chemical_info.source"},
    {"_chemical_properties_biological", "chemical_info.bioactivity"},
    // The crystal.
    {"_cell_formula_units_Z", "crystal_info.z"},
    {"_exptl_crystal_colour", "crystal_info.color"},
    {"_pd_char_colour", "crystal_info.color"},
    {"_exptl_crystal_description", "crystal_info.habit"},
    {"_chemical_melting_point", "crystal_info.melting_point"},
    {"_chemical_melting_point_gt", "melting_point_above"},
    {"_chemical_melting_point_lt", "melting_point_below"},
    {"_exptl_crystal_recrystallization_method", "crystal_info.recrystallisation_solvent"},
    // The experiment.
    {"_diffrn_ambient_temperature", "ambient_temperature"},
    {"_cell_measurement_temperature", "cell_temperature"},
    {"_diffrn_ambient_pressure", "experimental_info.pressure"},
    {"_exptl_crystal_density_meas", "experimental_info.experimental_density"},
    {"_exptl_crystal_density_diffrn", "experimental_info.calculated_density"},
    {"_refine_ls_R_factor_gt", "experimental_info.r_factor"},
    {"_refine_ls_R_factor_obs", "experimental_info.r_factor"},
    {"_refine_ls_R_factor_all", "experimental_info.r_factor"},
    {"_diffrn_radiation_probe", "experimental_info.probe"},
    {"_diffrn_source", "experimental_info.radiation_source"},
    {"_diffrn_radiation_source", "experimental_info.radiation_source"},
    {"_diffrn_radiation_type", "radiation_type"},
    {"_chemical_absolute_configuration", "experimental_info.absolute_configuration"},
    {"_diffrn_special_details", "experimental_info.diffraction_details"},
    {"_refine_special_details", "experimental_info.refinement_details"},
    {"_pd_calc_method", "experimental_info.powder"},
    {"_pd_calib_special_details", "experimental_info.powder"},
    {"_pd_char_particle_morphology", "experimental_info.powder"},
    {"_pd_instr_geometry", "experimental_info.powder"},
    {"_pd_instr_location", "experimental_info.powder"},
    {"_pd_meas_2theta_range_min", "experimental_info.powder"},
    {"_pd_meas_2theta_scan", "experimental_info.powder"},
    {"_pd_meas_number_of_points", "experimental_info.powder"},
    {"_pd_meas_scan_method", "experimental_info.powder"},
    {"_pd_phase_block_id", "experimental_info.powder"},
    {"_pd_phase_name", "experimental_info.powder"},
    {"_pd_prep_conditions", "experimental_info.powder"},
    {"_pd_proc_2theta_range_min", "experimental_info.powder"},
    {"_pd_proc_ls_prof_R_factor", "experimental_info.powder"},
    {"_pd_proc_ls_prof_wR_factor", "experimental_info.powder"},
    {"_pd_proc_ls_profile_function", "experimental_info.powder"},
    {"_pd_spec_mounting", "experimental_info.powder"},
    {"_pd_spec_shape", "experimental_info.powder"},
    {"_diffrn_measurement_device_type", "experimental_info.intensity_method"},
    {"_diffrn_measurement_device", "experimental_info.intensity_method"},
    // The editors.
    {"_audit_creation_date", "editors_info.accession_date"},
    {"_audit_update_record", "audit_update_record"},
    // Cell, symmetry, atoms, bonds.
    {"_cell_length_a", "cell.a"},
    {"_cell_length_b", "cell.b"},
    {"_cell_length_c", "cell.c"},
    {"_cell_angle_alpha", "cell.alpha"},
    {"_cell_angle_beta", "cell.beta"},
    {"_cell_angle_gamma", "cell.gamma"},
    {"_space_group_symop_operation_xyz", "cell.symmetry_operators"},
    {"_symmetry_equiv_pos_as_xyz", "cell.symmetry_operators"},
    {"_space_group_symop_magn_operation_xyz", "magnetic_operators"},
    {"_space_group_symop_magn_centering_xyz", "magnetic_centrings"},
    {"_space_group_symop_magn_ssg_operation_algebraic", "magnetic_superspace_operators"},
    {"_space_group_symop_magn_ssg_centering_algebraic", "magnetic_superspace_centrings"},
    {"_space_group_symop_ssg_operation_algebraic", "superspace_operators"},
    {"_space_group_ssg_symop_operation_algebraic", "superspace_operators"},
    {"_space_group_name_Hall", "hall_name"},
    {"_symmetry_space_group_name_Hall", "hall_name"},
    {"_space_group_name_H-M_alt", "hermann_mauguin_name"},
    {"_symmetry_space_group_name_H-M", "hermann_mauguin_name"},
    {"_space_group_name_H-M_ref", "hermann_mauguin_name"},
    {"_space_group_name_H-M_full", "hermann_mauguin_name"},
    {"_space_group_IT_number", "group_number"},
    {"_symmetry_Int_Tables_number", "group_number"},
    {"_symmetry_IT_number", "group_number"},
    {"_symmetry_cell_setting", "cell_setting"},
    {"_space_group_crystal_system", "cell_setting"},
    {"_atom_site_label", "crystal_maker.label"},
    {"_atom_site_type_symbol", "crystal_maker.element"},
    {"_atom_site_fract_x", "crystal_maker.x"},
    {"_atom_site_fract_y", "crystal_maker.y"},
    {"_atom_site_fract_z", "crystal_maker.z"},
    {"_atom_site_occupancy", "crystal_maker.occupancy"},
    {"_atom_site_disorder_assembly", "disorder_selector.assembly"},
    {"_atom_site_disorder_group", "disorder_selector.group"},
    {"_geom_bond_atom_site_label_1", "published_geometry.first"},
    {"_geom_bond_atom_site_label_2", "published_geometry.second"},
    {"_geom_bond_distance", "published_geometry.length"},
    // What tells the kind of a block and no more.
    {"_chem_comp_id", "kind"},
    {"_chem_comp_atom_comp_id", "kind"},
    {"_dictionary_name", "kind"},
    {"_dictionary_title", "kind"},
    {"_category", "kind"},
    {"_definition_id", "kind"},
    {"_item_name", "kind"},
    {"_name", "kind"},
    {"_entry_id", "kind"},
    {"_atom_site_Cartn_x", "kind"},
    {"_refln_index_h", "kind"},
    {"_refln_h", "kind"},
    {"_diffrn_refln_index_h", "kind"},
    {"_pd_meas_intensity_total", "kind"},
    {"_pd_meas_counts_total", "kind"},
    {"_pd_proc_point_id", "kind"},
    {"_pd_proc_intensity_total", "kind"},
};
// clang-format on
inline constexpr std::size_t cif_tag_count = std::size(cif_tag_rows);

// The rows of a field follow one another. A name that is not in the table does not compile.
consteval CifTagRange field(std::string_view name) {
  CifTagRange range;
  while (cif_tag_rows[range.begin].field != name) ++range.begin;
  range.end = range.begin;
  while (range.end < cif_tag_count && cif_tag_rows[range.end].field == name) ++range.end;
  return range;
}

consteval CifTag tag(std::string_view name) {
  std::size_t position = 0;
  while (cif_tag_rows[position].tag != name) ++position;
  return CifTag(position);
}
