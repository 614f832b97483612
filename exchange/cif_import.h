// Entries from the text of a CIF file, one for each data block.
//
// What goes where (tags without their underscore; the first that has a value is taken):
//   identifier          C and seven digits of cod_database_code, else A and those of amcsd_database_code or
//                       database_code_amcsd, else the name of the block
//   publication         publ_author_name; journal_coden_ASTM, journal_name_full (JournalFinder);
//                       journal_volume, journal_year, journal_page_first
//   chemical info       formula: chemical_formula_sum, _moiety, _structural; name: chemical_name_systematic,
//                       _common, _mineral, those not used are synonyms; source: chemical_compound_source
//   crystal info        cell_formula_units_Z; exptl_crystal_colour; habit: exptl_crystal_description
//   experimental info   temperature: diffrn_ambient_temperature, cell_measurement_temperature (kelvin, and
//                       as text with " K"); diffrn_ambient_pressure (with " kPa");
//                       exptl_crystal_density_meas and _diffrn; refine_ls_R_factor_gt, _obs, _all;
//                       probe: diffrn_radiation_probe, diffrn_radiation_type;
//                       source: diffrn_source, diffrn_radiation_source, diffrn_radiation_type when it says
//                       more than the probe
//   editors' info       accession date: audit_creation_date
//   depositions         contributor: "COD 1010588, AMCSD 0010866";
//                       co-editor: "IUCr " and journal_coeditor_code
//   cell, operators     cell_length_*, cell_angle_*; the symmetry operators of the file, else those of its
//                       Hall name, else those of its Hermann-Mauguin name in the setting that the angles
//                       tell, else none (never P 1)
//   atoms               atom_site_*: label and occupancy as they are; the element from the type symbol
//                       without its charge, else from the label (of "Os1" and "O" the one that the formula
//                       has)
//   published geometry  geom_bond_*, between the atoms of those labels
// What the file does not say stays at the default of its record. Texts are one line of UTF-8 (readable_text).
// Nothing is repaired: what looks wrong is taken as it stands and warned of.
//
// Values of a `global_` section, and of a block `data_global` without a cell that is not alone in its file,
// are inherited by the blocks behind it.
#pragma once

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <exchange/cif_error.h>
#include <exchange/export.h>
#include <exchange/journal_finder.h>
#include <utilities/t_handle.h>

#include <string>
#include <vector>

struct ImportWarning {
  int line = 0;  // from 1; 0 when no single line is to blame
  std::string text;
};

struct ImportedEntry {
  THandle<CrystalStructureImmediateDatabaseEntry> entry;  // all ten archived components are there
  std::string block;                                      // the name of the data block
  int line = 0;                                           // of its first value; 0 for an empty block
  std::string operators_from;  // "operators", "Hall name", "Hermann-Mauguin name"; empty when there are none
  std::vector<std::string> absent;  // what the file does not say, by the names of the records' fields
  std::vector<ImportWarning> warnings;
};

// Line ends may be LF, CRLF or CR. A block without a name gets the identifier `unnamed`. Throws CifError.
[[nodiscard]] EXCHANGE_EXPORT std::vector<ImportedEntry> import_cif(const std::string& text,
                                                                    const std::string& unnamed,
                                                                    const JournalFinder& journals);
