#include "entries/plain_archive.h"

#include <bit>
#include <concepts>
#include <cstring>
#include <stdexcept>

namespace plain {
namespace {

static_assert(std::endian::native == std::endian::little, "scalars are copied as they stand in memory");

template <class T>
concept Scalar = std::same_as<T, std::int32_t> || std::same_as<T, double> || std::same_as<T, bool>;

// Calls visit(item) for every scalar and text, and list(vector) ahead of the elements of a list.
template <class Visitor, class T>
void walk(Visitor& visitor, T& value) {
  using Value = std::remove_const_t<T>;
  if constexpr (Scalar<Value> || std::same_as<Value, std::string>) {
    visitor.item(value);
  } else if constexpr (Record<Value>) {
    std::apply([&](auto&... each) { (walk(visitor, each), ...); }, fields(value, &value));
  } else {
    if constexpr (requires(Value list) { list.resize(1); }) visitor.list(value);
    for (auto& element : value) walk(visitor, element);
  }
}

struct Writer {
  std::string& bytes;

  void item(const Scalar auto& value) { bytes.append(reinterpret_cast<const char*>(&value), sizeof value); }
  void item(const std::string& text) {
    item(static_cast<std::int32_t>(text.size()));
    bytes += text;
  }
  void list(const auto& elements) { item(static_cast<std::int32_t>(elements.size())); }
};

struct Reader {
  std::string_view& bytes;

  std::string_view take(std::size_t count) {
    if (bytes.size() < count) throw std::runtime_error("a stored entry ends too early");
    const std::string_view taken = bytes.substr(0, count);
    bytes.remove_prefix(count);
    return taken;
  }
  void item(Scalar auto& value) { std::memcpy(&value, take(sizeof value).data(), sizeof value); }
  std::size_t size() {
    std::int32_t count = 0;
    item(count);
    if (count < 0) throw std::runtime_error("a stored entry holds a negative count");
    return static_cast<std::size_t>(count);
  }
  void item(std::string& text) { text = take(size()); }
  void list(auto& elements) { elements.resize(size()); }
};

struct Counter {
  Counts counts;

  void item(const auto&) { ++counts.items; }
  void item(const std::string&) {
    ++counts.items;
    ++counts.texts;
  }
  void list(const auto&) { ++counts.items; }
};

}  // namespace

void write_entry(const Entry& entry, std::string& bytes) {
  Writer writer{bytes};
  walk(writer, entry);
}

Entry take_entry(std::string_view& bytes) {
  Entry entry;
  Reader reader{bytes};
  walk(reader, entry);
  return entry;
}

Entry read_entry(std::string_view bytes) {
  Entry entry = take_entry(bytes);
  if (!bytes.empty()) throw std::runtime_error("a stored entry is longer than its fields");
  return entry;
}

Counts counts(const Entry& entry) {
  Counter counter;
  walk(counter, entry);
  return counter.counts;
}

}  // namespace plain
