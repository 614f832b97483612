// The bytes as JSON. Every entry that comes of it is the same after another turn as JSON, one that has all
// archived components writes and reads back, and everything else has a reason.
#include <exchange/entry_json.h>
#include <exchange/json_reader.h>
#include <reliability/support/memory_stream.h>
#include <tools/files/entry_file.h>
#include <utilities/null_handle_error.h>

#include "entry_point.h"

void take(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  JsonReader reader(text);
  while (const auto result = reader.next()) {
    if (result->status != ImportResult::imported) {
      require(!result->reason.empty(), "no entry, and no reason");
      require(result->line > 0, "no entry, and no place");
      continue;
    }
    const auto json = entry_json(*result->entry);
    require(entry_json(*entry_from_json(json).entry) == json, "an entry's JSON reads back as another");
    std::string bytes;
    try {
      bytes = archived(*result->entry);
    } catch (const NullHandleError&) {
      continue;  // JSON may say that a component is null
    }
    THandle<StoredEntry> back = empty_entry();
    read_stream(*back, bytes);
    require(archived(*back) == bytes, "an imported entry reads back as another");
  }
}
