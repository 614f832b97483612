#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "storages/allocation_log.h"
#include "storages/framed_storage.h"
#include "storages/storages.h"

namespace {

// Moves the bytes of an entry in one call. For reading, the blocks that the library takes from the free store
// for that entry are taken and given back too, all with the sizes that the library asked for.
class BareStorage : public Storage {
 public:
  explicit BareStorage(const StoredEntries& entries)
      : entries_(entries), block_sizes_(entries.size()), copy_(entries.bytes.size(), '\0') {
    for (std::size_t index = 0; index < entries.size(); ++index) {
      StoredEntries one;
      one.bytes = entries.entry(index);
      one.ends = {one.bytes.size()};
      const std::unique_ptr<Storage> storage = archive_storage(one);
      const AllocationLog log;
      storage->read_memory();
      block_sizes_[index] = log.sizes();
      blocks_.resize(std::max(blocks_.size(), log.sizes().size()));
    }
  }

  void write_file(FILE* file) override {
    for (std::size_t index = 0; index < entries_.size(); ++index) {
      const std::string_view bytes = entries_.entry(index);
      std::fwrite(bytes.data(), 1, bytes.size(), file);
    }
  }

  void read_file(FILE* file) override {
    for (std::size_t index = 0; index < entries_.size(); ++index) {
      const std::size_t size = entries_.entry(index).size();
      if (std::fread(copy_.data(), 1, size, file) != size) throw std::runtime_error("the file is too short");
      take_and_free_blocks(index);
    }
  }

  void write_memory() override {
    char* to = copy_.data();
    for (std::size_t index = 0; index < entries_.size(); ++index) {
      const std::string_view bytes = entries_.entry(index);
      std::memcpy(to, bytes.data(), bytes.size());
      to += bytes.size();
    }
  }

  void read_memory() override {
    for (std::size_t index = 0; index < entries_.size(); ++index) {
      const std::string_view bytes = entries_.entry(index);
      std::memcpy(copy_.data(), bytes.data(), bytes.size());
      take_and_free_blocks(index);
    }
  }

 private:
  void take_and_free_blocks(std::size_t index) {
    const std::vector<std::size_t>& sizes = block_sizes_[index];
    for (std::size_t block = 0; block < sizes.size(); ++block) blocks_[block] = ::operator new(sizes[block]);
    for (std::size_t block = 0; block < sizes.size(); ++block) ::operator delete(blocks_[block]);
  }

  StoredEntries entries_;
  std::vector<std::vector<std::size_t>> block_sizes_;
  std::vector<void*> blocks_;
  std::string copy_;
};

// The archive form by hand, into plain values: no stream, no handles.
struct HandWrittenCodec {
  using Object = plain::Entry;
  static Object convert(const plain::Entry& entry) { return entry; }

  std::string_view encode(const Object& entry) {
    buffer.clear();
    plain::write_entry(entry, buffer);
    return buffer;
  }
  static void decode(std::string_view bytes, const auto& use) { use(plain::read_entry(bytes)); }

  std::string buffer = {};
};

}  // namespace

std::unique_ptr<Storage> bare_storage(const StoredEntries& entries) {
  return std::make_unique<BareStorage>(entries);
}
std::unique_ptr<Storage> hand_written_storage(const StoredEntries& entries) {
  return std::make_unique<FramedStorage<HandWrittenCodec>>(entries);
}
