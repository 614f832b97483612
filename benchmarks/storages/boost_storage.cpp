#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/serialization/array.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/vector.hpp>

#include "storages/framed_storage.h"
#include "storages/memory_stream.h"
#include "storages/storages.h"

namespace boost::serialization {

template <class Archive, plain::Record T>
void serialize(Archive& archive, T& record, unsigned int) {
  std::apply([&archive](auto&... each) { ((archive & each), ...); }, plain::fields(record, &record));
}

// Plain contents: no versions, no tracking of shared objects, nothing that an archive writes only once.
template <class T>
concept PlainContents = plain::Record<T> ||
    (!std::same_as<T, const std::string> && requires { typename T::value_type; });

template <PlainContents T>
struct implementation_level_impl<T> {
  using tag = mpl::integral_c_tag;
  using type = mpl::int_<object_serializable>;
  static constexpr int value = object_serializable;
};
template <PlainContents T>
struct tracking_level<T> {
  using tag = mpl::integral_c_tag;
  using type = mpl::int_<track_never>;
  static constexpr int value = track_never;
};

}  // namespace boost::serialization

namespace {

constexpr unsigned int flags = boost::archive::no_header | boost::archive::no_codecvt;

// One archive lives as long as the codec: making one is not part of storing an entry.
class BoostCodec {
 public:
  using Object = plain::Entry;
  static Object convert(const plain::Entry& entry) { return entry; }

  std::string_view encode(const Object& entry) {
    output_buffer_.clear();
    output_ << entry;
    return output_buffer_.bytes();
  }

  void decode(std::string_view bytes, const auto& use) {
    input_buffer_.assign(bytes);
    plain::Entry entry;
    input_ >> entry;
    use(entry);
  }

 private:
  OutputBuffer output_buffer_;
  boost::archive::binary_oarchive output_{output_buffer_, flags};
  InputBuffer input_buffer_;
  boost::archive::binary_iarchive input_{input_buffer_, flags};
};

}  // namespace

std::unique_ptr<Storage> boost_storage(const StoredEntries& entries) {
  return std::make_unique<FramedStorage<BoostCodec>>(entries);
}
