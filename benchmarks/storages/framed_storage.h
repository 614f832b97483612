// A storage of a library that turns one object into one run of bytes and back.
//
// A Codec has `Object`, the library's own form of an entry, and
//   Object convert(const plain::Entry&)                 once, not timed
//   std::string_view encode(const Object&)              into a buffer that is used again
//   void decode(std::string_view, const auto& use)      makes a new object, hands it to `use`, destroys it
// In a file a run of bytes follows its length, since these libraries must know where it ends.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "entries/plain_archive.h"
#include "storages/storage.h"

template <class Codec>
class FramedStorage : public Storage {
 public:
  explicit FramedStorage(const StoredEntries& entries) {
    for (std::size_t index = 0; index < entries.size(); ++index) {
      objects_.push_back(codec_.convert(plain::read_entry(entries.entry(index))));
      encoded_.emplace_back(codec_.encode(objects_.back()));
      require_round_trip(encoded_.back());
    }
  }

  void write_file(FILE* file) override {
    for (const auto& object : objects_) {
      const std::string_view bytes = codec_.encode(object);
      const auto length = static_cast<std::uint32_t>(bytes.size());
      std::fwrite(&length, sizeof length, 1, file);
      std::fwrite(bytes.data(), 1, bytes.size(), file);
    }
  }

  void read_file(FILE* file) override {
    for (std::size_t index = 0; index < objects_.size(); ++index) {
      std::uint32_t length = 0;
      if (std::fread(&length, sizeof length, 1, file) != 1) throw std::runtime_error("the file is too short");
      if (buffer_.size() < length) buffer_.resize(length);
      if (std::fread(buffer_.data(), 1, length, file) != length)
        throw std::runtime_error("the file is too short");
      codec_.decode(std::string_view(buffer_.data(), length), [](const auto&) {});
    }
  }

  void write_memory() override {
    for (const auto& object : objects_) codec_.encode(object);
  }

  void read_memory() override {
    for (const std::string& bytes : encoded_) codec_.decode(bytes, [](const auto&) {});
  }

 private:
  void require_round_trip(const std::string& bytes) {
    std::string again;
    codec_.decode(bytes, [&](const auto& object) { again = codec_.encode(object); });
    if (again != bytes) throw std::logic_error("a stored entry did not come back as it was");
  }

  Codec codec_;
  std::vector<typename Codec::Object> objects_;
  std::vector<std::string> encoded_;
  std::string buffer_;
};
