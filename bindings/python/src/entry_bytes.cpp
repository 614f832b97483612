#include "entry_bytes.h"

#include <stores/codec/entry_encoding.h>

#include <cstdint>
#include <limits>
#include <stdexcept>

namespace {

constexpr std::int32_t layout = 1;

ByteStreams& streams() {
  thread_local ByteStreams kept;
  return kept;
}

EntryBytes encoded(const CrystalStructureDatabaseEntry& entry) {
  try {
    return encode(entry, streams());
  } catch (const ComponentFault& fault) {
    throw std::invalid_argument("entry " + entry.identifier().text() + ", " + component_label(fault.kind()) +
                                ": " + fault.what());
  }
}

void append(std::string& bytes, std::int32_t number) {
  const auto bits = static_cast<std::uint32_t>(number);
  for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<char>((bits >> shift) & 0xffU));
}

void append(std::string& bytes, const std::string& part) {
  if (part.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
    throw std::invalid_argument("a component of more than two gigabytes");
  append(bytes, static_cast<std::int32_t>(part.size()));
  bytes += part;
}

class Reader {
 public:
  explicit Reader(std::string_view bytes) : rest_(bytes) {}

  std::int32_t number() {
    const std::string_view bytes = next(4);
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 4; ++i)
      bits |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    return static_cast<std::int32_t>(bits);
  }

  std::string_view next(std::size_t length) {
    if (length > rest_.size()) throw std::invalid_argument("the bytes of an entry end too early");
    const std::string_view part = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return part;
  }

  [[nodiscard]] bool at_end() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

}  // namespace

std::string stored_bytes(const CrystalStructureDatabaseEntry& entry) {
  const EntryBytes parts = encoded(entry);
  std::string bytes;
  append(bytes, layout);
  append(bytes, parts.identifier);
  for (const auto& component : parts.components) {
    if (component) {
      append(bytes, *component);
    } else {
      append(bytes, std::int32_t(-1));
    }
  }
  return bytes;
}

bool are_stored_alike(const CrystalStructureDatabaseEntry& left, const CrystalStructureDatabaseEntry& right) {
  return encoded(left) == encoded(right);
}

THandle<CrystalStructureImmediateDatabaseEntry> entry_from_stored_bytes(std::string_view bytes) {
  Reader reader(bytes);
  if (reader.number() != layout) throw std::invalid_argument("the bytes of an entry have another layout");
  EntryBytes parts;
  const auto length = [&] { return static_cast<std::size_t>(static_cast<std::uint32_t>(reader.number())); };
  parts.identifier = reader.next(length());
  for (auto& component : parts.components) {
    const std::int32_t size = reader.number();
    if (size >= 0) component.emplace(reader.next(static_cast<std::size_t>(size)));
  }
  if (!reader.at_end()) throw std::invalid_argument("the bytes of an entry go on after its last component");
  try {
    return decode(parts, streams());
  } catch (const ComponentFault& fault) {
    throw std::invalid_argument("entry " + parts.identifier + ", " + component_label(fault.kind()) + ": " +
                                fault.what());
  }
}
