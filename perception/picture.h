// Pictures of an entry: its diagram, its unit cell, its molecules, as SVG, PNG or PDF.
//
//   const Picture picture = draw_picture(entry, {.kind = PictureKind::cell, .format = PictureFormat::png});
//   std::ofstream("cell.png", std::ios::binary) << picture.bytes;
//
// What an entry has not is perceived for the picture. The same entry and options give the same bytes each
// time and on every machine with the same cairo: letters are drawn as lines, so that no font is asked for,
// and no date is written. The diagram leaves out hydrogen atoms of carbon; bonds whose type is not known are
// dotted. The cell is drawn with its edges and all atoms in it, those on faces on each of them; what is
// nearer is in front, what is far is paler; metal atoms farther apart than their radii, which share the
// non-metal atoms around them, have no stick there. Independent molecules are drawn next to one another.
// Colours are those that molecular models have: carbon grey, nitrogen blue, oxygen red. Fails:
// PerceptionError where there is nothing to draw, saying why, where more than 20,000 atoms would be drawn,
// and for a size that is not from 16 to 20,000.
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>
#include <perception/export.h>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

// The last one is the diagram, or the cell where there is no diagram.
enum class PictureKind { diagram, cell, molecule, diagram_or_cell };
enum class PictureFormat { svg, png, pdf };

struct PictureOptions {
  PictureKind kind = PictureKind::diagram;
  PictureFormat format = PictureFormat::svg;
  // The lattice vector along which one looks, {0, 0, 1} for down c; all 0 for a view that shows depth (the
  // cell) or as much of the molecule as can be.
  std::array<double, 3> view = {0.0, 0.0, 0.0};
  bool labels = false;  // of the atoms, in pictures of cells and molecules
  int width = 800;      // pixels of a PNG, points of the others
  int height = 600;
  std::size_t most_drawn_atoms = 60;  // in a molecule's diagram, as PerceptionOptions has it
};

struct Picture {
  std::string bytes;
  std::size_t atoms = 0;  // how many were drawn
  std::size_t bonds = 0;
};

[[nodiscard]] PERCEPTION_EXPORT Picture draw_picture(const CrystalStructureDatabaseEntry& entry,
                                                     const PictureOptions& options = {});

// Many entries in rows, each above its identifier; what cannot be drawn is left empty but for the reason. The
// size is that of one picture. `columns` of 0 makes the sheet about square. An entry that is null throws
// NullHandleError.
[[nodiscard]] PERCEPTION_EXPORT Picture
draw_sheet(const std::vector<THandle<CrystalStructureDatabaseEntry>>& entries,
           const PictureOptions& options = {}, std::size_t columns = 0);

// "svg", "png" or "pdf" from the end of a file's name, in either case. Throws PerceptionError for another
// one.
[[nodiscard]] PERCEPTION_EXPORT PictureFormat picture_format_of(const std::string& file_name);

// The direction of "a", "b", "c" or "x,y,z". Throws PerceptionError for anything else, and for a vector of no
// length.
[[nodiscard]] PERCEPTION_EXPORT std::array<double, 3> picture_view_of(const std::string& text);
