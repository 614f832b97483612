#include <fcntl.h>
#include <unistd.h>
#include <utilities/archive.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <stdexcept>
#include <unordered_map>

#include "stores/store_cases.h"

namespace {

// What somebody would write who has nothing but publications to look up: a hash of identifiers, pread, and
// the record read from memory. Neither writing nor damage was thought of.
class PublicationFile {
 public:
  PublicationFile(const RepeatedEntries& entries, std::size_t count, const std::string& path) {
    FILE* const file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) throw std::runtime_error(path + " cannot be written");
    Archive archive(file);
    for (std::size_t index = 0; index < count; ++index) {
      const long begin = std::ftell(file);
      entries.entry(index).publication()->write(archive);
      places_[entries.identifier(index)] = {begin, static_cast<std::size_t>(std::ftell(file) - begin)};
    }
    std::fclose(file);
    descriptor_ = ::open(path.c_str(), O_RDONLY);
    stream_ = ::fmemopen(buffer_.data(), buffer_.size(), "rb");
    if (descriptor_ < 0 || stream_ == nullptr) throw std::runtime_error(path + " cannot be read");
  }
  PublicationFile(const PublicationFile&) = delete;
  PublicationFile& operator=(const PublicationFile&) = delete;
  ~PublicationFile() {
    std::fclose(stream_);
    ::close(descriptor_);
  }

  THandle<Publication> publication(const DatabaseEntryIdentifier& identifier) {
    const Place& place = places_.at(identifier.text());
    if (::pread(descriptor_, buffer_.data(), place.size, place.offset) != static_cast<ssize_t>(place.size)) {
      throw std::runtime_error("the publication is not there");
    }
    std::rewind(stream_);
    Archive archive(stream_);
    THandle<Publication> publication(new Publication());
    publication->read(archive);
    return publication;
  }

 private:
  struct Place {
    long offset;
    std::size_t size;
  };
  std::unordered_map<std::string, Place> places_;
  int descriptor_;
  std::array<char, 65536> buffer_{};
  FILE* stream_;
};

// Different ones in every pass.
class RandomIdentifiers {
 public:
  RandomIdentifiers(const RepeatedEntries& entries, std::size_t count) {
    for (std::size_t index = 0; index < count; ++index) identifiers_.emplace_back(entries.identifier(index));
  }
  const DatabaseEntryIdentifier& next() { return identifiers_[engine_() % identifiers_.size()]; }

 private:
  std::vector<DatabaseEntryIdentifier> identifiers_;
  std::mt19937_64 engine_;
};

constexpr std::size_t looks = 1000;

template <class Look>
std::function<void()> pass_of(const RepeatedEntries& entries, std::size_t count, Look look) {
  const auto identifiers = std::make_shared<RandomIdentifiers>(entries, count);
  return [identifiers, look] {
    long years = 0;
    for (std::size_t index = 0; index < looks; ++index) years += look(identifiers->next())->year;
    if (years < static_cast<long>(1900 * looks)) throw std::runtime_error("not the publications");
  };
}

std::function<void()> pass_within_snapshot(const RepeatedEntries& entries, const FilledStore& filled) {
  const auto pass = pass_of(entries, filled.count, [store = filled.store](const auto& identifier) {
    return store->source(identifier)->publication();
  });
  return [pass, store = filled.store] {
    const auto snapshot = store->snapshot();
    pass();
  };
}

}  // namespace

void add_fetch_cases(Suite& suite, const RepeatedEntries& entries, const FilledStore& small,
                     const FilledStore& large, const std::string& folder) {
  const std::string by_hand = "by hand: hash of identifiers, pread, decode";
  const std::string first = "first look at a publication within a snapshot, of " + small.size() + " entries";
  suite.measure(first, "SQLite", looks, 0, pass_within_snapshot(entries, small));
  const auto file = std::make_shared<PublicationFile>(entries, small.count, folder + "/publications");
  suite.measure(first, by_hand, looks, 0, pass_of(entries, small.count, [file](const auto& identifier) {
                  return file->publication(identifier);
                }));
  suite.compare_with(first, "SQLite");
  suite.expect(first, {by_hand, Goal::at_most_times, 1.5});

  const std::string growth = "the same without a snapshot, and of more entries";
  suite.measure(growth, large.size() + " entries", looks, 0, pass_within_snapshot(entries, large));
  suite.measure(growth, small.size() + " entries", looks, 0, pass_within_snapshot(entries, small));
  suite.measure(growth, small.size() + " entries, no snapshot", looks, 0,
                pass_of(entries, small.count, [store = small.store](const auto& identifier) {
                  return store->source(identifier)->publication();
                }));
  suite.compare_with(growth, large.size() + " entries");
  suite.expect(growth, {small.size() + " entries", Goal::at_most_times, 2});
}
