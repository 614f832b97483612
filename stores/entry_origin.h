// Where an entry came from.
//
//   store->put(entry, {"1010588.cif", "1010588", "9f86d081...", 1700000000}, OnDuplicate::replace);
//
// An entry of the same file and block is the same entry when it is imported again, whatever its identifier is
// then.
#pragma once

#include <cstdint>
#include <string>

struct EntryOrigin {
  std::string file = {};    // empty for an entry that came from no file
  std::string block = {};   // the data block within it
  std::string sha256 = {};  // of the file: 64 hexadecimal digits, or empty
  // Seconds since 1970-01-01T00:00:00Z at which it was stored; 0 is "now" in put().
  std::int64_t stored_at = 0;

  friend bool operator==(const EntryOrigin&, const EntryOrigin&) = default;
};
