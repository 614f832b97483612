// Prints each field that an archive holds, with its type, and each enumeration with its values and texts:
// made from the lists of fields for docs/archive_format.md.
#include <database_entry/database_entry.h>
#include <database_entry/entries/components.h>

#include <algorithm>
#include <array>
#include <iomanip>
#include <iostream>
#include <set>
#include <string>
#include <vector>

namespace {

void line(const std::string& name, const std::string& type) {
  std::cout << std::left << std::setw(56) << name << type << '\n';
}

// The values of an enumeration in their order, with their texts; kept until all fields are printed.
std::vector<std::string> enumeration_lines;

template <class Enumeration>
void note_enumeration(const std::string& field) {
  if constexpr (!std::is_null_pointer_v<std::remove_const_t<decltype(enum_texts<Enumeration>)>>) {
    const auto texts = enum_texts<Enumeration>();
    std::vector<std::pair<Enumeration, std::string>> rows(texts->begin(), texts->end());
    std::sort(rows.begin(), rows.end());
    for (const auto& [value, text] : rows) {
      enumeration_lines.push_back(field + " " + std::to_string(value) + ": " + text);
    }
  }
}

// How a field of this type is archived. Records in it are taken apart.
template <class T>
struct Shown {
  static void as(const std::string& name) {
    if constexpr (std::is_enum_v<T>) {
      line(name, "enumeration");
      note_enumeration<T>(name);
    } else {
      std::apply(
          [&](const auto&... field) {
            const std::string in = name.empty() ? "" : name + ".";
            (Shown<typename std::remove_cvref_t<decltype(field)>::Type>::as(in + field.name), ...);
          },
          T::fields());
    }
  }
};
template <>
struct Shown<int> {
  static void as(const std::string& name) { line(name, "integer"); }
};
template <>
struct Shown<double> {
  static void as(const std::string& name) { line(name, "double"); }
};
template <>
struct Shown<bool> {
  static void as(const std::string& name) { line(name, "boolean"); }
};
template <>
struct Shown<std::string> {
  static void as(const std::string& name) { line(name, "text"); }
};
template <std::size_t count>
struct Shown<std::array<int, count>> {
  static void as(const std::string& name) { line(name, std::to_string(count) + " integers"); }
};
template <std::size_t count>
struct Shown<std::array<double, count>> {
  static void as(const std::string& name) { line(name, std::to_string(count) + " doubles"); }
};
template <class T>
struct Shown<THandle<T>> : Shown<T> {};
template <class T>
struct Shown<std::vector<T>> {
  static void as(const std::string& name) {
    line(name, "integer, the number of elements; then for each:");
    Shown<T>::as(name + "[]");
  }
};
template <class T, class Less>
struct Shown<std::set<T, Less>> : Shown<std::vector<T>> {};
template <>
struct Shown<DepositionInfo::Deposition> {
  static void as(const std::string& name) {
    Shown<DepositionInfo::DepositionType>::as(name + ".type");
    Shown<std::string>::as(name + ".text");
  }
};
template <>
struct Shown<ConnectivityBond> {
  static void as(const std::string& name) {
    line(name + ".first", "integer, the position of the atom from 0 on");
    line(name + ".second", "integer, the position of the atom from 0 on");
    Shown<BondType>::as(name + ".type");
  }
};

}  // namespace

int main() {
  std::cout << "// begin fields\n";
  line("identifier", "text");
  for_each_component([](auto component) {
    using Component = typename decltype(component)::Type;
    if constexpr (component.archived) Shown<Component>::as(component.name);
  });
  std::cout << "// end fields\n\n// begin enumerations\n";
  for (const std::string& row : enumeration_lines) std::cout << row << '\n';
  for (int value = ChemicalClassification::carbohydrate; value <= ChemicalClassification::high_polymer;
       ++value) {
    const ChemicalClassification classification(static_cast<ChemicalClassification::Classifier>(value));
    std::cout << "chemical_info.classifiers[].classifier " << value << ": " << classification.str() << '\n';
  }
  std::cout << "// end enumerations\n";
  return 0;
}
