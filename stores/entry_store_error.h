// What went wrong with a store, and where.
//
//   try {
//     store->entry(identifier);
//   } catch (const EntryNotFound& error) {
//     std::cerr << "did you mean " << error.nearest() << "?\n";
//   } catch (const EntryStoreError& error) {
//     std::cerr << error.what() << '\n';     // "known.db: entry 1010588, publication: ..."
//   }
#pragma once

#include <stores/export.h>

#include <stdexcept>
#include <string>

class STORES_EXPORT EntryStoreError : public std::runtime_error {
 public:
  // What the trouble is about, from the outside in. The entry and the component are empty where the trouble
  // is not about one. An identifier is shown shortened and without control characters, and kept as it is.
  struct Place {
    std::string store;
    std::string entry;
    std::string component;
  };

  EntryStoreError(const Place& place, const std::string& reason);
  ~EntryStoreError() override;

  [[nodiscard]] const Place& place() const& { return place_; }
  // The engine's own words, or ours, with the way out where there is one.
  [[nodiscard]] const std::string& reason() const& { return reason_; }
  const Place& place() const&& = delete;
  const std::string& reason() const&& = delete;

 private:
  Place place_;
  std::string reason_;
};

// There is no entry of that identifier.
class STORES_EXPORT EntryNotFound : public EntryStoreError {
 public:
  // `nearest` may be empty: a store without entries has none.
  EntryNotFound(const std::string& store, const std::string& identifier, const std::string& nearest);
  ~EntryNotFound() override;

  // The identifier that looks most like the one asked for, of those that are its neighbours in the order of
  // bytes.
  [[nodiscard]] const std::string& nearest() const& { return nearest_; }
  const std::string& nearest() const&& = delete;

 private:
  std::string nearest_;
};

// What is stored is not what was put: a hash that does not fit, bytes that give no component, a row that is
// missing.
class STORES_EXPORT DamagedStore : public EntryStoreError {
 public:
  using EntryStoreError::EntryStoreError;
  ~DamagedStore() override;
};

// An entry is there already and was to be refused.
class STORES_EXPORT EntryAlreadyStored : public EntryStoreError {
 public:
  using EntryStoreError::EntryStoreError;
  ~EntryAlreadyStored() override;
};
