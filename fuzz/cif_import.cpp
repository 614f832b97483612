// The bytes as a CIF file. Every entry that comes of it writes and reads back, and everything else has a
// reason.
#include <exchange/cif_reader.h>
#include <reliability/support/memory_stream.h>
#include <tools/files/entry_file.h>

#include "entry_point.h"

void take(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  CifReader reader(text);
  while (const auto result = reader.next()) {
    if (result->status != ImportResult::imported) {
      require(!result->reason.empty(), "no entry, and no reason");
      require(result->line > 0, "no entry, and no place");
      continue;
    }
    const std::string bytes = archived(*result->entry);
    THandle<StoredEntry> back = empty_entry();
    read_stream(*back, bytes);
    require(archived(*back) == bytes, "an imported entry reads back as another");
  }
}
