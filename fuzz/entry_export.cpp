// The bytes as an archived entry. Whatever entry an archive can give is the same after a turn as JSON, and
// after one as CIF.
#include <exchange/cif_reader.h>
#include <exchange/cif_writer.h>
#include <exchange/entry_json.h>
#include <reliability/support/memory_stream.h>
#include <tools/files/entry_file.h>

#include <exception>
#include <sstream>

#include "entry_point.h"

void take(const std::uint8_t* data, std::size_t size) {
  THandle<StoredEntry> entry = empty_entry();
  try {
    read_stream(*entry, std::string(reinterpret_cast<const char*>(data), size));
  } catch (const std::exception&) {
    return;
  }
  const std::string bytes = archived(*entry);
  const JsonEntry from_json = entry_from_json(entry_json(*entry));
  require(archived(*from_json.entry) == bytes, "an entry reads back from JSON as another");
  require(from_json.absent.empty() && from_json.unknown.empty(), "JSON does not say all, or too much");
  std::ostringstream cif;
  CifWriter(cif).write(*entry);
  const std::vector<ImportResult> results = read_cif(cif.str());
  require(results.size() == 1 && results.front().status == ImportResult::imported, "CIF that is no entry");
  require(archived(*results.front().entry) == bytes, "an entry reads back from CIF as another");
}
