// An entry as the bytes of its components, and back.
// Internal: for the engines.
//
//   EntryBytes bytes = encode(entry, streams);            // bytes.components[kind - 1]
//   EntryDecoder decoder(identifier, fetch, streams);     // asks `fetch` for the bytes of a component at
//   most once decoder.get(component_row<ComponentKind::publication>);
#pragma once

#include <database_entry/entries/components.h>
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <stores/codec/byte_streams.h>
#include <stores/codec/component_layouts.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

constexpr std::size_t slot(ComponentKind kind) {
  return static_cast<std::size_t>(kind) - 1;
}

// The name of a component as errors have it.
[[nodiscard]] const char* component_label(ComponentKind kind);

// A component that cannot be written or read.
class ComponentFault : public std::runtime_error {
 public:
  ComponentFault(ComponentKind kind, const std::string& reason) : std::runtime_error(reason), kind_(kind) {}
  [[nodiscard]] ComponentKind kind() const { return kind_; }

 private:
  ComponentKind kind_;
};

struct EntryBytes {
  std::string identifier;
  std::array<std::optional<std::string>, component_count> components;

  friend bool operator==(const EntryBytes&, const EntryBytes&) = default;
};

// Asks each accessor of the entry once, in the order of the kinds. Throws ComponentFault for a component that
// an archive cannot hold; what an accessor throws passes through.
[[nodiscard]] EntryBytes encode(const CrystalStructureDatabaseEntry& entry, ByteStreams& streams);

class EntryDecoder {
 public:
  // Gives the bytes of a component, or nothing for a null one.
  using Fetch = std::function<std::optional<std::string>(ComponentKind)>;

  EntryDecoder(Fetch fetch, ByteStreams& streams) : fetch_(std::move(fetch)), streams_(streams) {}

  // The component; the same object at every call. Throws ComponentFault for bytes that give none, and what
  // `fetch` throws; the next call then asks again.
  template <class Row>
  [[nodiscard]] THandle<typename Row::Type> get(const Row& component);

 private:
  // A null handle owns a count, and most components of a source are never asked for.
  template <class T>
  using Obtained = std::optional<THandle<T>>;

  template <class Row>
  THandle<typename Row::Type> decoded(const std::string& bytes);
  const SharedObjects& objects_of(int kind);

  Fetch fetch_;
  ByteStreams& streams_;
  PerComponent<Obtained> obtained_;
  std::array<std::unique_ptr<const SharedObjects>, component_count> objects_;  // null where there are none
};

// The whole entry.
[[nodiscard]] THandle<CrystalStructureImmediateDatabaseEntry> decode(const EntryBytes& bytes,
                                                                     ByteStreams& streams);

template <class Row>
THandle<typename Row::Type> EntryDecoder::get(const Row& component) {
  auto& known = obtained_[component];
  if (!known) {
    const std::optional<std::string> bytes = fetch_(Row::kind);
    known.emplace(bytes ? decoded<Row>(*bytes) : THandle<typename Row::Type>());
  }
  return *known;
}

template <class Row>
THandle<typename Row::Type> EntryDecoder::decoded(const std::string& bytes) {
  auto handle = THandle<typename Row::Type>::make();
  SharedObjects own;
  try {
    if constexpr (Row::archived) {
      streams_.read(bytes, [&](Archive& archive) { handle->read(archive); });
    } else {
      // Other components may be read on the way, so the shared streams are not free.
      ByteStreams streams;
      const FetchObjects fetch = [this](int kind) -> const SharedObjects& { return objects_of(kind); };
      streams.read(bytes, [&](Archive& archive) { read_layout(archive, fetch, own, *handle); });
    }
  } catch (const ArchiveError& error) {
    throw ComponentFault(Row::kind, error.what());
  } catch (const std::invalid_argument& error) {
    throw ComponentFault(Row::kind, error.what());
  }
  if constexpr (Row::kind == ComponentKind::crystal_maker) {
    std::get<ObjectTable<Atom>>(own) = handle->atoms();
  }
  if constexpr (Row::kind == ComponentKind::connectivity_info) {
    std::get<ObjectTable<ConnectivityAtom>>(own) = handle->connectivity()->atoms;
    std::get<ObjectTable<ConnectivityBond>>(own) = handle->connectivity()->bonds;
  }
  if constexpr (!Row::archived || Row::kind == ComponentKind::crystal_maker ||
                Row::kind == ComponentKind::connectivity_info) {
    objects_[slot(Row::kind)] = std::make_unique<const SharedObjects>(std::move(own));
  }
  return handle;
}
