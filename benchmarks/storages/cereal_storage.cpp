#include <cereal/archives/binary.hpp>
#include <cereal/types/array.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>

#include "storages/framed_storage.h"
#include "storages/memory_stream.h"
#include "storages/storages.h"

namespace plain {

template <class Archive, Record T>
void serialize(Archive& archive, T& record) {
  std::apply([&archive](auto&... each) { archive(each...); }, fields(record, &record));
}

}  // namespace plain

namespace {

// One archive lives as long as the codec: making one is not part of storing an entry.
class CerealCodec {
 public:
  using Object = plain::Entry;
  static Object convert(const plain::Entry& entry) { return entry; }

  std::string_view encode(const Object& entry) {
    output_buffer_.clear();
    output_(entry);
    return output_buffer_.bytes();
  }

  void decode(std::string_view bytes, const auto& use) {
    input_buffer_.assign(bytes);
    plain::Entry entry;
    input_(entry);
    use(entry);
  }

 private:
  OutputBuffer output_buffer_;
  std::ostream output_stream_{&output_buffer_};
  cereal::BinaryOutputArchive output_{output_stream_};
  InputBuffer input_buffer_;
  std::istream input_stream_{&input_buffer_};
  cereal::BinaryInputArchive input_{input_stream_};
};

}  // namespace

std::unique_ptr<Storage> cereal_storage(const StoredEntries& entries) {
  return std::make_unique<FramedStorage<CerealCodec>>(entries);
}
