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
  template <class T>
  struct Obtained {
    bool is_obtained = false;
    THandle<T> handle;
  };

  const SharedObjects& objects_of(int kind);

  Fetch fetch_;
  ByteStreams& streams_;
  PerComponent<Obtained> obtained_;
  std::array<SharedObjects, component_count> objects_;
};

// The whole entry.
[[nodiscard]] THandle<CrystalStructureImmediateDatabaseEntry> decode(const EntryBytes& bytes,
                                                                     ByteStreams& streams);

template <class Row>
THandle<typename Row::Type> EntryDecoder::get(const Row& component) {
  auto& known = obtained_[component];
  if (known.is_obtained) return known.handle;
  const std::optional<std::string> bytes = fetch_(Row::kind);
  THandle<typename Row::Type> handle;
  SharedObjects own;
  if (bytes) {
    handle = THandle<typename Row::Type>::make();
    try {
      // What a layout refers to is fetched before its own bytes are read: the two share the streams.
      if constexpr (Row::archived) {
        streams_.read(*bytes, [&](Archive& archive) { handle->read(archive); });
      } else {
        ByteStreams streams;
        streams.read(*bytes, [&](Archive& archive) {
          read_layout(
              archive, [this](int kind) -> const SharedObjects& { return objects_of(kind); }, own, *handle);
        });
      }
    } catch (const ArchiveError& error) {
      throw ComponentFault(Row::kind, error.what());
    } catch (const std::invalid_argument& error) {
      throw ComponentFault(Row::kind, error.what());
    }
    if constexpr (Row::kind == ComponentKind::crystal_maker)
      std::get<ObjectTable<Atom>>(own) = handle->atoms();
    if constexpr (Row::kind == ComponentKind::connectivity_info) {
      std::get<ObjectTable<ConnectivityAtom>>(own) = handle->connectivity()->atoms;
      std::get<ObjectTable<ConnectivityBond>>(own) = handle->connectivity()->bonds;
    }
  }
  objects_[slot(Row::kind)] = std::move(own);
  known.handle = handle;
  known.is_obtained = true;
  return handle;
}
