#include <google/protobuf/arena.h>

#include <concepts>

#include "protobuf_entry.pb.h"
#include "storages/framed_storage.h"
#include "storages/storages.h"

namespace {

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

// The n-th field of a record is the field with the number n of its message. Reflection is slow, but nothing
// of this is timed.
void fill(Message& message, const plain::Record auto& record);

void set(Message& message, const FieldDescriptor* field, const auto& value) {
  using Value = std::remove_cvref_t<decltype(value)>;
  const google::protobuf::Reflection* reflection = message.GetReflection();
  if constexpr (std::same_as<Value, std::int32_t>) {
    field->is_repeated() ? reflection->AddInt32(&message, field, value)
                         : reflection->SetInt32(&message, field, value);
  } else if constexpr (std::same_as<Value, double>) {
    field->is_repeated() ? reflection->AddDouble(&message, field, value)
                         : reflection->SetDouble(&message, field, value);
  } else if constexpr (std::same_as<Value, bool>) {
    reflection->SetBool(&message, field, value);
  } else if constexpr (std::same_as<Value, std::string>) {
    field->is_repeated() ? reflection->AddString(&message, field, value)
                         : reflection->SetString(&message, field, value);
  } else if constexpr (plain::Record<Value>) {
    fill(field->is_repeated() ? *reflection->AddMessage(&message, field)
                              : *reflection->MutableMessage(&message, field),
         value);
  } else {
    for (const auto& element : value) set(message, field, element);
  }
}

void fill(Message& message, const plain::Record auto& record) {
  int number = 0;
  std::apply(
      [&](const auto&... each) {
        (set(message, message.GetDescriptor()->FindFieldByNumber(++number), each), ...);
      },
      plain::fields(record, &record));
}

class ProtobufCodec {
 public:
  using Object = protobuf_entry::Entry;

  static Object convert(const plain::Entry& entry) {
    Object object;
    fill(object, entry);
    return object;
  }

  std::string_view encode(const Object& object) {
    const std::size_t size = object.ByteSizeLong();
    if (buffer_.size() < size) buffer_.resize(size);
    object.SerializeWithCachedSizesToArray(reinterpret_cast<std::uint8_t*>(buffer_.data()));
    return {buffer_.data(), size};
  }

 private:
  std::string buffer_;
};

void parse(protobuf_entry::Entry& entry, std::string_view bytes) {
  if (!entry.ParseFromArray(bytes.data(), static_cast<int>(bytes.size()))) {
    throw std::runtime_error("a message cannot be read");
  }
}

struct HeapCodec : ProtobufCodec {
  static void decode(std::string_view bytes, const auto& use) {
    protobuf_entry::Entry entry;
    parse(entry, bytes);
    use(entry);
  }
};

// The first block of the arena is used again for the next entry, as the library recommends.
struct ArenaCodec : ProtobufCodec {
  void decode(std::string_view bytes, const auto& use) {
    google::protobuf::Arena arena(block.data(), block.size());
    auto* entry = google::protobuf::Arena::CreateMessage<protobuf_entry::Entry>(&arena);
    parse(*entry, bytes);
    use(*entry);
  }

  std::vector<char> block = std::vector<char>(256 * 1024);
};

}  // namespace

std::unique_ptr<Storage> protobuf_heap_storage(const StoredEntries& entries) {
  return std::make_unique<FramedStorage<HeapCodec>>(entries);
}
std::unique_ptr<Storage> protobuf_arena_storage(const StoredEntries& entries) {
  return std::make_unique<FramedStorage<ArenaCodec>>(entries);
}
