#include <stores/entry_store.h>

#include <array>
#include <charconv>
#include <map>
#include <set>
#include <stdexcept>

namespace {

using Values = std::set<std::string>;

void take(Values& values, const std::string& text) {
  values.insert(text);
}
void take(Values& values, std::int64_t number) {
  values.insert(std::to_string(number));
}
void take(Values& values, double number) {
  std::array<char, 32> text;
  values.emplace(text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr);
}
void take(Values& values, const ElementCount& element) {
  values.insert(element.symbol);
}
template <class T>
void take(Values& values, const std::optional<T>& value) {
  if (value) take(values, *value);
}
template <class T>
void take(Values& values, const std::vector<T>& list) {
  for (const T& value : list) take(values, value);
}

// Numbers by value, all else by bytes.
struct InOrderOfValues {
  bool is_number;

  bool operator()(const std::string& one, const std::string& other) const {
    if (!is_number) return one < other;
    const auto value = [](const std::string& text) {
      double number = 0.0;
      std::from_chars(text.data(), text.data() + text.size(), number);
      return number;
    };
    return value(one) < value(other);
  }
};

}  // namespace

EntrySnapshot::~EntrySnapshot() = default;
EntryStore::~EntryStore() = default;

StoreResult EntryStore::put(const CrystalStructureDatabaseEntry& entry, const EntryOrigin& origin,
                            OnDuplicate rule) {
  return put_all({{&entry, origin}}, rule).front();
}

void EntryStore::set_imported(const std::string& file, const std::string& sha256) {
  set_imported({{file, sha256}});
}

std::vector<std::pair<std::string, std::uint64_t>> EntryStore::tally(const std::string& column,
                                                                     const EntryQuery& query) {
  bool is_known = false;
  std::vector<std::pair<std::string, std::uint64_t>> result;
  for_each_entry_column([&](const auto& candidate) {
    using Column = std::remove_cvref_t<decltype(candidate)>;
    const std::string name = Column::is_elements ? "element" : candidate.short_name;
    if (is_known || column.empty() || name != column) return;
    is_known = true;
    std::map<std::string, std::uint64_t, InOrderOfValues> counts(
        InOrderOfValues{Column::is_integer || Column::is_number});
    for (SelectOptions page = {.after = {}, .limit = 1000};;) {
      const std::vector<EntryColumns> entries = select_columns(query, page);
      for (const EntryColumns& entry : entries) {
        Values values;
        take(values, entry.*candidate.member);
        for (const std::string& value : values) ++counts[value];
      }
      if (entries.size() < *page.limit) break;
      page.after = entries.back().identifier;
    }
    result.assign(counts.begin(), counts.end());
  });
  if (!is_known) throw std::invalid_argument("there is no column \"" + column + "\" to count by");
  return result;
}
