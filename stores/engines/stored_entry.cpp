#include <stores/engines/stored_entry.h>
#include <stores/entry_store_error.h>
#include <xxhash.h>
#include <zstd.h>

#include <bit>
#include <chrono>
#include <cstring>
#include <memory>
#include <new>

namespace {

void append(std::string& bytes, std::uint64_t value, int count = 8) {
  for (int byte = 0; byte < count; ++byte) bytes += static_cast<char>(value >> (8 * byte) & 0xFF);
}

std::uint64_t taken(std::string_view bytes, int count = 8) {
  std::uint64_t value = 0;
  for (int byte = 0; byte < count; ++byte) {
    value |= static_cast<std::uint64_t>(static_cast<unsigned char>(bytes[static_cast<std::size_t>(byte)]))
             << (8 * byte);
  }
  return value;
}

void append_text(std::string& bytes, std::string_view text) {
  append(bytes, text.size(), 4);
  bytes += text;
}

bool take_text(std::string_view& bytes, std::string& text) {
  if (bytes.size() < 4) return false;
  const std::uint64_t size = taken(bytes, 4);
  bytes.remove_prefix(4);
  if (size > bytes.size()) return false;
  text = bytes.substr(0, size);
  bytes.remove_prefix(size);
  return true;
}

std::uint64_t hash_of(std::string_view bytes, std::uint64_t seed = 0) {
  return XXH3_64bits_withSeed(bytes.data(), bytes.size(), seed);
}

}  // namespace

std::uint64_t component_hash(ComponentKind kind, std::string_view bytes) {
  return hash_of(bytes, static_cast<std::uint64_t>(kind));
}

std::uint64_t row_digest(const EntryHead& head, const EntryOrigin& origin) {
  std::string bytes;
  append_text(bytes, head.identifier);
  append(bytes, head.components, 4);
  for (const std::uint64_t hash : head.hashes) append(bytes, hash);
  append_text(bytes, origin.file);
  append_text(bytes, origin.block);
  append_text(bytes, origin.sha256);
  append(bytes, static_cast<std::uint64_t>(origin.stored_at));
  return hash_of(bytes);
}

std::string packed_head(const EntryHead& head, const EntryOrigin& origin) {
  std::string packed;
  append(packed, head.components, 4);
  for_each_component([&](auto component) {
    if (head.has(component.kind)) append(packed, head.hashes[slot(component.kind)]);
  });
  append(packed, row_digest(head, origin));
  return packed;
}

std::optional<std::uint64_t> unpack_head(std::string_view packed, EntryHead& head) {
  constexpr std::uint32_t all_kinds = ((1U << component_count) - 1) << 1;
  if (packed.size() < 4) return std::nullopt;
  head.components = static_cast<std::uint32_t>(taken(packed, 4));
  packed.remove_prefix(4);
  if ((head.components & ~all_kinds) != 0) return std::nullopt;
  if (packed.size() != 8 * (static_cast<std::size_t>(std::popcount(head.components)) + 1))
    return std::nullopt;
  for (std::size_t index = 0; index < component_count; ++index) {
    head.hashes[index] = 0;
    if (!head.has(static_cast<ComponentKind>(index + 1))) continue;
    head.hashes[index] = taken(packed);
    packed.remove_prefix(8);
  }
  return taken(packed);
}

StoredEntry prepare(const CrystalStructureDatabaseEntry& entry, const EntryOrigin& origin,
                    const std::string& place, std::int64_t now, ByteStreams& streams) {
  StoredEntry stored;
  const std::string identifier = entry.identifier().text();
  if (identifier.size() > longest_identifier) {
    throw EntryStoreError({place, identifier, ""}, "its identifier has " + std::to_string(identifier.size()) +
                                                       " bytes; " + std::to_string(longest_identifier) +
                                                       " is the most");
  }
  stored.origin = origin;
  if (stored.origin.stored_at == 0) stored.origin.stored_at = now;
  try {
    const EntryBytes first = encode(entry, streams);
    const auto read_back = decode(first, streams);
    stored.bytes = encode(*read_back, streams);
    stored.columns = entry_columns(*read_back, stored.origin);
  } catch (const ComponentFault& fault) {
    throw EntryStoreError({place, identifier, component_label(fault.kind())}, fault.what());
  }
  stored.head.identifier = identifier;
  for_each_component([&](auto component) {
    const auto& bytes = stored.bytes.components[slot(component.kind)];
    if (!bytes) return;
    stored.head.components |= 1U << static_cast<int>(component.kind);
    stored.head.hashes[slot(component.kind)] = component_hash(component.kind, *bytes);
  });
  return stored;
}

std::int64_t current_time() {
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
      .count();
}

std::string packed(std::string_view bytes, bool compress) {
  // Small components would not get much smaller, and are read the faster.
  constexpr std::size_t smallest = 512;
  constexpr int level = 1;
  if (compress && bytes.size() >= smallest) {
    std::string result(1 + ZSTD_compressBound(bytes.size()), '\1');
    const std::size_t size =
        ZSTD_compress(result.data() + 1, result.size() - 1, bytes.data(), bytes.size(), level);
    if (ZSTD_isError(size) == 0 && size < bytes.size() / 4 * 3) {
      result.resize(1 + size);
      return result;
    }
  }
  std::string result(1, '\0');
  result += bytes;
  return result;
}

std::optional<std::string> unpacked(std::string_view packed_bytes) {
  if (packed_bytes.empty() || packed_bytes.front() > 1) return std::nullopt;
  const bool is_compressed = packed_bytes.front() == 1;
  packed_bytes.remove_prefix(1);
  if (!is_compressed) return std::string(packed_bytes);
  // A damaged size must not take memory out of proportion.
  constexpr unsigned long long most_expansion = 4096;
  constexpr unsigned long long always_allowed = 1ULL << 20;
  const unsigned long long size = ZSTD_getFrameContentSize(packed_bytes.data(), packed_bytes.size());
  if (size > always_allowed + most_expansion * packed_bytes.size()) return std::nullopt;
  std::string bytes(size, '\0');
  // A context takes longer to make than most components take to unpack.
  struct FreeContext {
    void operator()(ZSTD_DCtx* context) const { ZSTD_freeDCtx(context); }
  };
  thread_local const std::unique_ptr<ZSTD_DCtx, FreeContext> context(ZSTD_createDCtx());
  if (context == nullptr) throw std::bad_alloc();
  const std::size_t count = ZSTD_decompressDCtx(context.get(), bytes.data(), bytes.size(),
                                                packed_bytes.data(), packed_bytes.size());
  if (ZSTD_isError(count) != 0 || count != size) return std::nullopt;
  return bytes;
}

std::string packed_list(const std::vector<std::string>& texts) {
  std::string bytes;
  for (const std::string& text : texts) append_text(bytes, text);
  return bytes;
}

std::string packed_list(const std::vector<ElementCount>& elements) {
  std::string bytes;
  for (const ElementCount& element : elements) {
    append_text(bytes, element.symbol);
    append(bytes, std::bit_cast<std::uint64_t>(element.count));
  }
  return bytes;
}

bool unpack_list(std::string_view bytes, std::vector<std::string>& texts) {
  texts.clear();
  while (!bytes.empty()) {
    if (!take_text(bytes, texts.emplace_back())) return false;
  }
  return true;
}

bool unpack_list(std::string_view bytes, std::vector<ElementCount>& elements) {
  elements.clear();
  while (!bytes.empty()) {
    ElementCount& element = elements.emplace_back();
    if (!take_text(bytes, element.symbol) || bytes.size() < 8) return false;
    element.count = std::bit_cast<double>(taken(bytes));
    bytes.remove_prefix(8);
  }
  return true;
}

double element_ratio(const EntryColumns& columns, const ElementCount& element) {
  double all = 0.0;
  for (const ElementCount& other : columns.elements) all += other.count;
  return element.count / all;
}

std::uint64_t row_sum(std::int64_t entry, const TextRow& row) {
  std::string bytes;
  append(bytes, static_cast<std::uint64_t>(entry));
  append(bytes, static_cast<std::uint64_t>(row.column), 4);
  append(bytes, static_cast<std::uint64_t>(row.position), 4);
  append(bytes, std::bit_cast<std::uint64_t>(row.hash));
  append_text(bytes, row.folded);
  if (row.value) append_text(bytes, *row.value);
  return hash_of(bytes);
}

std::uint64_t row_sum(std::int64_t entry, std::string_view symbol, double count, double ratio) {
  std::string bytes;
  append(bytes, static_cast<std::uint64_t>(entry));
  append(bytes, std::bit_cast<std::uint64_t>(count));
  append(bytes, std::bit_cast<std::uint64_t>(ratio));
  bytes += symbol;
  return hash_of(bytes);
}
