// picture: the diagram, the cell or the molecules of an entry, or a sheet of many entries.
#include <fmt/format.h>
#include <fmt/ostream.h>
#include <perception/perception_error.h>
#include <perception/picture.h>

#include <ostream>
#include <stdexcept>

#include "tools/commands/commands.h"
#include "tools/files/atomic_file.h"
#include "tools/files/collection.h"
#include "tools/files/outputs.h"

namespace {

FileKind file_kind(PictureFormat format) {
  switch (format) {
    case PictureFormat::svg:
      return FileKind::svg;
    case PictureFormat::png:
      return FileKind::png;
    case PictureFormat::pdf:
      break;
  }
  return FileKind::pdf;
}

// What the command line asks for. Without a kind, what has no diagram is drawn as a cell.
PictureOptions picture_options(const PictureCommandOptions& options) {
  if (static_cast<int>(options.diagram) + static_cast<int>(options.cell) +
          static_cast<int>(options.molecule) >
      1)
    throw ToolError(ExitCode::usage, "picture: --diagram, --cell or --molecule, not two of them");
  PictureOptions asked;
  if (!options.diagram) asked.kind = PictureKind::diagram_or_cell;
  if (options.cell) asked.kind = PictureKind::cell;
  if (options.molecule) asked.kind = PictureKind::molecule;
  try {
    if (options.output != "-") asked.format = picture_format_of(options.output);
    if (!options.view.empty()) asked.view = picture_view_of(options.view);
  } catch (const PerceptionError& error) {
    throw ToolError(ExitCode::usage, fmt::format("picture: {}", error.what()));
  }
  asked.labels = options.labels;
  for (const int size : {options.width, options.height})
    if (size < 16 || size > 20000)
      throw ToolError(ExitCode::usage,
                      fmt::format("picture: --width and --height are from 16 to 20,000, not {}", size));
  asked.width = options.width;
  asked.height = options.height;
  return asked;
}

}  // namespace

ExitCode picture_command(const PictureCommandOptions& options, Terminal& terminal) {
  if (options.output.empty())
    throw ToolError(ExitCode::usage,
                    "picture: -o FILE.svg, FILE.png or FILE.pdf says where the picture goes");
  if (options.identifiers.empty() && !options.sheet)
    throw ToolError(ExitCode::usage, "picture: which entry? Name an identifier, or --sheet for all entries");
  const PictureOptions asked = picture_options(options);
  Outputs outputs(options.force);
  outputs.read(options.collection);
  outputs.written("-o", options.output, file_kind(asked.format));
  outputs.check();
  std::vector<THandle<CrystalStructureDatabaseEntry>> entries;
  for_each_entry(options.collection, options.identifiers, [&](const StoredEntry& entry) {
    entries.push_back(THandle<CrystalStructureDatabaseEntry>(new StoredEntry(entry)));
  });
  const bool is_sheet = options.sheet || entries.size() > 1;
  Picture picture;
  try {
    picture = is_sheet ? draw_sheet(entries, asked, options.columns) : draw_picture(*entries.front(), asked);
  } catch (const std::invalid_argument& error) {  // of perception, or of the lattice
    const std::string entry = is_sheet ? "" : entries.front()->identifier().text() + ": ";
    throw ToolError(ExitCode::problems, fmt::format("{}: {}{}", options.collection, entry, error.what()));
  }
  AtomicFile file(options.output);
  file.write(picture.bytes);
  file.commit();
  fmt::print(options.output == "-" ? terminal.messages : terminal.out, "{} {}, {} atoms and {} bonds drawn\n",
             entries.size(), entries.size() == 1 ? "entry" : "entries", picture.atoms, picture.bonds);
  return picture.atoms == 0 ? ExitCode::problems : ExitCode::done;
}
