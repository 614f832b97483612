#include <msgpack.hpp>

#include "storages/framed_storage.h"
#include "storages/storages.h"

// A record is an array of its fields.
namespace msgpack {
MSGPACK_API_VERSION_NAMESPACE(MSGPACK_DEFAULT_API_NS) {
  namespace adaptor {

  template <plain::Record T>
  struct pack<T> {
    template <class Stream>
    packer<Stream>& operator()(packer<Stream>& out, const T& record) const {
      std::apply(
          [&out](const auto&... each) {
            out.pack_array(sizeof...(each));
            (out.pack(each), ...);
          },
          plain::fields(record, &record));
      return out;
    }
  };

  template <plain::Record T>
  struct convert<T> {
    const msgpack::object& operator()(const msgpack::object& from, T& record) const {
      std::apply(
          [&from](auto&... each) {
            if (from.type != type::ARRAY || from.via.array.size != sizeof...(each)) throw type_error();
            const msgpack::object* field = from.via.array.ptr;
            (field++->convert(each), ...);
          },
          plain::fields(record, &record));
      return from;
    }
  };

  }  // namespace adaptor
}
}  // namespace msgpack

namespace {

class MsgpackCodec {
 public:
  using Object = plain::Entry;
  static Object convert(const plain::Entry& entry) { return entry; }

  std::string_view encode(const Object& entry) {
    buffer_.clear();
    msgpack::pack(buffer_, entry);
    return {buffer_.data(), buffer_.size()};
  }

  void decode(std::string_view bytes, const auto& use) {
    zone_.clear();
    // Texts stay in `bytes` until they are converted.
    const msgpack::object object =
        msgpack::unpack(zone_, bytes.data(), bytes.size(), [](auto, auto, auto) { return true; });
    plain::Entry entry;
    object.convert(entry);
    use(entry);
  }

 private:
  msgpack::sbuffer buffer_;
  msgpack::zone zone_;
};

}  // namespace

std::unique_ptr<Storage> msgpack_storage(const StoredEntries& entries) {
  return std::make_unique<FramedStorage<MsgpackCodec>>(entries);
}
