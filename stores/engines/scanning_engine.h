// What engines without a database share: they answer queries by looking at the columns of every entry.
// Internal: for the engines.
#pragma once

#include <stores/engines/store_engine.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

class ScanningEngine : public StoreEngine {
 public:
  [[nodiscard]] std::vector<std::string> select(const EntryQuery& query,
                                                const SelectOptions& options) override {
    std::vector<std::string> found;
    for (EntryColumns& columns : select_columns(query, options))
      found.push_back(std::move(columns.identifier));
    return found;
  }
  [[nodiscard]] std::vector<EntryColumns> select_columns(const EntryQuery& query,
                                                         const SelectOptions& options) override {
    std::vector<EntryColumns> found;
    if (options.limit == std::size_t{0}) return found;
    scan(options.after, [&](const EntryColumns& columns) {
      if (query.matches(columns)) found.push_back(columns);
      return !options.limit || found.size() < *options.limit;
    });
    return found;
  }
  [[nodiscard]] std::uint64_t count(const EntryQuery& query) override {
    std::uint64_t matching = 0;
    scan({}, [&](const EntryColumns& columns) {
      if (query.matches(columns)) ++matching;
      return true;
    });
    return matching;
  }
  [[nodiscard]] std::optional<std::uint64_t> index_sum() override { return std::nullopt; }

 protected:
  // Shows the columns of each entry after that identifier, in the order of identifiers, until `look` gives
  // false.
  virtual void scan(const std::optional<std::string>& after,
                    const std::function<bool(const EntryColumns&)>& look) = 0;
};
