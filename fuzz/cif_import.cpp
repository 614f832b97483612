// The bytes as a CIF file. Every entry that comes of it writes and reads back.
#include <exchange/cif_import.h>
#include <reliability/support/memory_stream.h>
#include <tools/files/entry_file.h>

#include "entry_point.h"

void take(const std::uint8_t* data, std::size_t size) {
  static const JournalFinder journals;
  try {
    const std::string text(reinterpret_cast<const char*>(data), size);
    for (const ImportedEntry& imported : import_cif(text, "unnamed", journals)) {
      const std::string bytes = archived(*imported.entry);
      THandle<StoredEntry> back = empty_entry();
      read_stream(*back, bytes);
      require(archived(*back) == bytes, "an imported entry reads back as another");
    }
  } catch (const CifError& error) {
    require(!std::string(error.what()).empty(), "an error without a reason");
    require(error.fault.line > 0 && error.fault.column > 0, "an error without a place");
  }
}
