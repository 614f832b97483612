// The texts of an enumeration: an immutable list of (value, text), one to one, sorted by text.
//
//   const auto probes = ExperimentalInfo::radiation_probe_text();
//   probes->text(ExperimentalInfo::neutron);   // "neutron"
//   probes->value("x-ray");                    // ExperimentalInfo::x_ray
//
// Any enumeration of 32 bits has one, signed or not. Texts are compared byte by byte: case counts, upper case
// sorts before lower case.
// Never changed once it is made: it may be copied, but neither assigned nor moved from. Threads: any number.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

// The accessor of an enumeration's texts: enum_texts<ExperimentalInfo::RadiationProbe>(). Set beside the
// record that offers it; null for an enumeration without texts.
template <class E>
inline constexpr std::nullptr_t enum_texts = nullptr;

template <class E>
class EnumTextMapping {
  static_assert(std::is_enum_v<E> && sizeof(E) == sizeof(std::int32_t),
                "archived enumerations are 32 bits wide");

 public:
  // One row of the constant table that a mapping is made from. The text is NUL-terminated.
  struct Initialiser {
    E value;
    const char* text;
  };

  // Takes the first `count` rows. Throws std::invalid_argument when there are none, or when a text or a value
  // is repeated; either would be a mistake in a constant table.
  EnumTextMapping(const Initialiser* table, unsigned int count) {
    if (count == 0) {
      throw std::invalid_argument("Internal Error: in EnumTextMapping::EnumTextMapping, size cannot be zero");
    }
    entries_.reserve(count);
    std::transform(table, table + count, std::back_inserter(entries_), MakeMappingEntry());
    std::sort(entries_.begin(), entries_.end(), SortOnText());
    const bool texts_unique =
        std::adjacent_find(entries_.begin(), entries_.end(), TextEqual()) == entries_.end();
    std::vector<E> values;
    all_members(values);
    std::sort(values.begin(), values.end());
    const bool values_unique = std::adjacent_find(values.begin(), values.end()) == values.end();
    if (!texts_unique || !values_unique) {
      throw std::invalid_argument(
          "Internal Error: in EnumTextMapping::EnumTextMapping, mapping is not unique");
    }
  }

  EnumTextMapping(const EnumTextMapping&) = default;
  EnumTextMapping(EnumTextMapping&&) = delete;
  EnumTextMapping& operator=(const EnumTextMapping&) = delete;
  ~EnumTextMapping() = default;

  // Appends every value in the order of the texts; what is in `out` stays before them.
  void all_members(std::vector<E>& out) const {
    std::transform(entries_.begin(), entries_.end(), std::back_inserter(out), SelectID());
  }

  // Throws std::invalid_argument, naming the value, when the mapping has no text for it.
  [[nodiscard]] const std::string& text(E value) const& {
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [value](const auto& entry) { return entry.first == value; });
    if (found == entries_.end()) {
      throw std::invalid_argument("EnumTextMapping: no text for the value " +
                                  std::to_string(static_cast<std::underlying_type_t<E>>(value)));
    }
    return found->second;
  }
  const std::string& text(E value) const&& = delete;

  // Throws std::invalid_argument, naming the text, when no value has it.
  [[nodiscard]] E value(const std::string& text) const {
    const auto found =
        std::lower_bound(entries_.begin(), entries_.end(), text,
                         [](const auto& entry, const std::string& wanted) { return entry.second < wanted; });
    if (found == entries_.end() || found->second != text) {
      throw std::invalid_argument("EnumTextMapping: no value for the text \"" + text + "\"");
    }
    return found->first;
  }

  // The pairs (value, text), by text ascending.
  [[nodiscard]] auto begin() const { return entries_.begin(); }
  [[nodiscard]] auto end() const { return entries_.end(); }
  [[nodiscard]] unsigned int size() const { return static_cast<unsigned int>(entries_.size()); }

 private:
  struct MakeMappingEntry {
    std::pair<E, std::string> operator()(const Initialiser& row) const { return {row.value, row.text}; }
  };
  struct SortOnText {
    bool operator()(const auto& a, const auto& b) const { return a.second < b.second; }
  };
  struct TextEqual {
    bool operator()(const auto& a, const auto& b) const { return a.second == b.second; }
  };
  struct SelectID {
    E operator()(const auto& entry) const { return entry.first; }
  };

  std::vector<std::pair<E, std::string>> entries_;
};
