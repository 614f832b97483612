#include <stores/engines/nearest_text.h>
#include <stores/engines/stored_entry_source.h>

#include <utility>

ComponentReader::~ComponentReader() = default;

std::optional<std::int64_t> ComponentReader::number_of(const std::string& identifier) {
  const auto head = find(identifier);
  if (!head) return std::nullopt;
  return head->number;
}

std::optional<ComponentReader::First> ComponentReader::first(std::int64_t /*number*/,
                                                             const std::string& identifier,
                                                             ComponentKind kind) {
  auto head = find(identifier);
  if (!head) return std::nullopt;
  First first = {std::move(*head), std::nullopt};
  if (first.head.has(kind)) first.bytes = component(first.head, kind);
  return first;
}

namespace {

// Throws DamagedStore unless the bytes are those that were stored.
void check_component(const std::string& place, const std::string& entry, const EntryHead& head,
                     ComponentKind kind, const std::optional<std::string>& bytes) {
  if (bytes && component_hash(kind, *bytes) == head.hashes[slot(kind)]) return;
  throw DamagedStore({place, entry, entry.empty() ? "" : component_label(kind)},
                     bytes ? "its bytes are not those that were stored (their hash differs)"
                           : "its bytes are missing or cannot be unpacked");
}

// The bytes of a component, which are no longer there afterwards; nothing where they cannot be unpacked.
std::optional<std::string> taken(ComponentReader::Whole& whole, ComponentKind kind) {
  auto bytes = std::exchange(whole.bytes.components[slot(kind)], std::nullopt);
  return bytes && whole.is_packed ? unpacked(*bytes) : std::move(bytes);
}

class StoredEntrySource : public CrystalStructureDatabaseEntryDataSource {
 public:
  StoredEntrySource(std::shared_ptr<ComponentReader> reader, const std::string& identifier,
                    std::int64_t number)
      : reader_(std::move(reader)),
        identifier_(identifier),
        number_(number),
        decoder_([this](ComponentKind kind) { return bytes(kind); }, reader_->streams()) {}
  StoredEntrySource(std::shared_ptr<ComponentReader> reader, ComponentReader::Whole whole)
      : StoredEntrySource(std::move(reader), whole.head.identifier, whole.head.number) {
    prefetched_ = std::make_unique<ComponentReader::Whole>(std::move(whole));
    head_ = prefetched_->head;
  }
  // The decoder asks this very object.
  StoredEntrySource(const StoredEntrySource&) = delete;
  StoredEntrySource& operator=(const StoredEntrySource&) = delete;

  [[nodiscard]] DatabaseEntryIdentifier identifier() const override {
    return DatabaseEntryIdentifier(identifier_);
  }

#define STORED_COMPONENT(number, name, label, Type)   \
  [[nodiscard]] THandle<Type> name() const override { \
    return get(component_row<ComponentKind::name>);   \
  }
  DATABASE_ENTRY_COMPONENTS(STORED_COMPONENT, STORED_COMPONENT)
#undef STORED_COMPONENT

 private:
  template <class Row>
  THandle<typename Row::Type> get(const Row& row) const {
    try {
      return decoder_.get(row);
    } catch (const ComponentFault& fault) {
      throw DamagedStore({reader_->place(), identifier_, component_label(fault.kind())}, fault.what());
    }
  }

  // The bytes of a component, checked; nothing for a null one.
  std::optional<std::string> bytes(ComponentKind kind) const {
    return naming(identifier_, component_label(kind), [&] {
      std::optional<std::string> found = head_ ? later_bytes(kind) : first_bytes(kind);
      has_answered_ = true;
      return found;
    });
  }

  // The head comes with the first component that is wanted.
  std::optional<std::string> first_bytes(ComponentKind kind) const {
    auto first = reader_->first(number_, identifier_, kind);
    if (!first) {
      throw EntryStoreError({reader_->place(), "", ""}, "the entry was removed while it was read");
    }
    if (first->head.has(kind)) {
      check_bytes(first->head, kind, first->bytes);
    } else {
      first->bytes.reset();
    }
    head_.emplace(std::move(first->head));
    return std::move(first->bytes);
  }

  std::optional<std::string> later_bytes(ComponentKind kind) const {
    if (!head_->has(kind)) return std::nullopt;
    std::optional<std::string> found;
    if (prefetched_ != nullptr) found = taken(*prefetched_, kind);
    if (!found) found = reader_->component(*head_, kind);
    if (found && component_hash(kind, *found) == head_->hashes[slot(kind)]) return found;
    // Either the entry was replaced since its head was read, or what is stored is damaged.
    const auto present = reader_->find(identifier_);
    if (present && present->is_like(*head_)) check_bytes(*present, kind, found);
    if (present && !has_answered_) {
      head_.reset();
      prefetched_.reset();
      number_ = present->number;
      return first_bytes(kind);
    }
    throw EntryStoreError({reader_->place(), "", ""},
                          present ? "the entry was replaced while it was read; ask for the entry anew"
                                  : "the entry was removed while it was read");
  }

  void check_bytes(const EntryHead& head, ComponentKind kind, const std::optional<std::string>& found) const {
    check_component(reader_->place(), "", head, kind, found);
  }

  std::shared_ptr<ComponentReader> reader_;
  std::string identifier_;
  mutable std::int64_t number_;
  mutable std::optional<EntryHead> head_;
  mutable std::unique_ptr<ComponentReader::Whole>
      prefetched_;  // what was not asked for yet; null where nothing was prefetched
  mutable EntryDecoder decoder_;
  mutable bool has_answered_ = false;
};

}  // namespace

void throw_not_found(ComponentReader& reader, const std::string& identifier) {
  constexpr int neighbour_count = 16;
  throw EntryNotFound(reader.place(), identifier,
                      nearest_text(identifier, reader.neighbours(identifier, neighbour_count)));
}

THandle<CrystalStructureDatabaseEntryDataSource> make_source(const std::shared_ptr<ComponentReader>& reader,
                                                             const std::string& identifier,
                                                             Prefetch prefetch) {
  return naming(identifier, "", [&] {
    if (prefetch == Prefetch::all) {
      auto whole = reader->find_whole(identifier);
      if (!whole) throw_not_found(*reader, identifier);
      return THandle<CrystalStructureDatabaseEntryDataSource>(
          new StoredEntrySource(reader, std::move(*whole)));
    }
    const auto number = reader->number_of(identifier);
    if (!number) throw_not_found(*reader, identifier);
    return THandle<CrystalStructureDatabaseEntryDataSource>(
        new StoredEntrySource(reader, identifier, *number));
  });
}

THandle<CrystalStructureImmediateDatabaseEntry> make_entry(ComponentReader& reader,
                                                           const std::string& identifier) {
  return naming(identifier, "", [&] {
    auto whole = reader.find_whole(identifier);
    if (!whole) throw_not_found(reader, identifier);
    for_each_component([&](auto component) {
      if (!whole->head.has(component.kind)) return;
      auto bytes = taken(*whole, component.kind);
      check_component(reader.place(), identifier, whole->head, component.kind, bytes);
      whole->bytes.components[slot(component.kind)] = std::move(bytes);
    });
    try {
      return decode(whole->bytes, reader.streams());
    } catch (const ComponentFault& fault) {
      throw DamagedStore({reader.place(), identifier, component_label(fault.kind())}, fault.what());
    }
  });
}
