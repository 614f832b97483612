#include <stores/entry_store_error.h>

namespace {

// Long or unprintable identifiers are shortened and masked, so that a message never carries a damaged store
// with it.
std::string shown(const std::string& identifier) {
  constexpr std::size_t longest = 40;
  std::string text = identifier.substr(0, longest);
  for (char& c : text) {
    if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) c = '?';
  }
  return identifier.size() > longest ? text + "..." : text;
}

std::string message(const EntryStoreError::Place& place, const std::string& reason) {
  std::string text = place.store;
  if (!place.entry.empty()) text += ": entry " + shown(place.entry);
  if (!place.component.empty()) text += (place.entry.empty() ? ": " : ", ") + place.component;
  return text + ": " + reason;
}

std::string not_found(const std::string& identifier, const std::string& nearest) {
  std::string text = "there is no entry \"" + shown(identifier) + "\"";
  if (!nearest.empty()) text += "; the nearest is \"" + shown(nearest) + "\"";
  return text;
}

}  // namespace

EntryStoreError::EntryStoreError(const Place& place, const std::string& reason)
    : std::runtime_error(message(place, reason)), place_(place), reason_(reason) {}
EntryStoreError::~EntryStoreError() = default;

EntryNotFound::EntryNotFound(const std::string& store, const std::string& identifier,
                             const std::string& nearest)
    : EntryStoreError({store, "", ""}, not_found(identifier, nearest)), nearest_(nearest) {}
EntryNotFound::~EntryNotFound() = default;

DamagedStore::~DamagedStore() = default;
EntryAlreadyStored::~EntryAlreadyStored() = default;
