// Values of entries from JSON, by the fields of the records.
// Internal: callers want exchange/entry_json.h.
#pragma once

#include <exchange/entry_json.h>

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "exchange/json/value_writer.h"
#include "exchange/rebuild.h"

// Enumerations of which archives hold any number; of the others they hold members only.
template <class E>
inline constexpr bool may_hold_any_number =
    std::is_same_v<E, EditorsInfo::AuthorCorrespondence> || std::is_same_v<E, EditorsInfo::IgnoredErrors> ||
    std::is_same_v<E, RangeLimit::LimitCondition> || std::is_same_v<E, BondType>;

class ValueReader {
 public:
  using Json = nlohmann::ordered_json;

  ValueReader(std::vector<std::string>& absent, std::vector<std::string>& unknown)
      : absent_(absent), unknown_(unknown) {}

  // Everything under `name` of an object; absent where there is no such name.
  template <class Value>
  void member(const Json& object, const char* name, Value& value) {
    const auto found = object.find(name);
    const Step step(*this, name);
    if (found == object.end()) {
      absent_.push_back(place());
    } else {
      read(*found, value);
    }
  }

  // Names that no member has.
  void note_unknown(const Json& object, std::initializer_list<std::string_view> known);

  void read(const Json& json, bool& value);
  void read(const Json& json, int& value);
  void read(const Json& json, double& value);
  void read(const Json& json, std::string& text);
  void read(const Json& json, Date& date);
  void read(const Json& json, CrystalSymmetryOperator& symmetry_operator);
  void read(const Json& json, ChemicalClassification& classification);
  void read(const Json& json, Journal& journal);
  void read(const Json& json, UncertainValue& value);
  void read(const Json& json, Range<double, DoubleComparator>& range);
  void read(const Json& json, Cell& cell);
  void read(const Json& json, Atom& atom);
  void read(const Json& json, CrystalMaker& crystal);
  void read(const Json& json, ConnectivityInfo& info);
  void read(const Json& json, ChemicalDiagram& diagram);
  void read(const Json& json, CrossReferenceInfo& info);
  void read(const Json& json, DepositionInfo& info);
  void read(const Json& json, DisorderSelector& selector);
  void read(const Json& json, PublishedGeometry& geometry);

  // A text of the enumeration or the number of one, or any number where an archive holds any.
  template <class E>
  requires std::is_enum_v<E>
  void read(const Json& json, E& value) {
    const bool by_text = has_texts<E> && json.is_string();
    int number = 0;
    if (!by_text) read(json, number);
    if constexpr (has_texts<E>) {
      const auto texts = enum_texts<E>();
      for (const auto& [known, text] : *texts) {
        const bool is_meant =
            by_text ? text == json.get_ref<const std::string&>() : known == static_cast<E>(number);
        if (!is_meant || !may_be_stored(known)) continue;
        value = known;
        return;
      }
      if (by_text) fail_as_no_member("'" + json.get<std::string>() + "'", members_of<E>());
      if (!may_hold_any_number<E>) fail_as_no_member(std::to_string(number), members_of<E>());
    } else {
      static_assert(may_hold_any_number<E>);
    }
    value = static_cast<E>(number);
  }

  template <class Target>
  void read(const Json& json, THandle<Target>& handle) {
    handle = THandle<Target>();
    if (json.is_null()) return;
    handle = THandle<Target>(new Target);
    read(json, *handle);
  }

  template <class Value>
  void read(const Json& json, std::vector<Value>& values) {
    values.clear();
    for_each_element(json, [&](const Json& element) { read(element, values.emplace_back()); });
  }

  template <class Record>
  requires requires { Record::fields(); }
  void read(const Json& json, Record& record) {
    expect(json.is_object(), "an object is expected");
    std::vector<std::string_view> known;
    for_each_field(record, [&](const char* name, auto& value) {
      known.emplace_back(name);
      member(json, name, value);
    });
    note_unknown_names(json, known);
  }

  template <class A1, class B1, class A2, class B2>
  void read(const Json& json, GraphMatch<A1, B1, A2, B2>& match) {
    expect(json.is_object(), "an object is expected");
    read_pairs(json, "atoms", match.atoms);
    read_pairs(json, "bonds", match.bonds);
    note_unknown(json, {"atoms", "bonds"});
  }

  [[noreturn]] void fail(const std::string& what) const;
  void expect(bool holds, const char* what) const {
    if (!holds) fail(what);
  }

  // Of which entry errors tell.
  void set_entry(const std::string& identifier) { entry_ = identifier; }

  // The field that is being read, "publication.authors[2]".
  [[nodiscard]] std::string place() const { return place_; }

  // One name or position further while it lives.
  class Step {
   public:
    Step(ValueReader& reader, const char* name) : reader_(reader), length_(reader.place_.size()) {
      if (length_ != 0) reader_.place_ += '.';
      reader_.place_ += name;
    }
    Step(ValueReader& reader, std::size_t position) : reader_(reader), length_(reader.place_.size()) {
      reader_.place_ += "[" + std::to_string(position) + "]";
    }
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;
    ~Step() { reader_.place_.resize(length_); }

   private:
    ValueReader& reader_;
    std::size_t length_;
  };

 private:
  // What lists have given to point to, by the class of what is in them.
  template <class Target>
  using List = std::vector<THandle<Target>>;

  template <class Read>
  void for_each_element(const Json& json, const Read& read_element) {
    expect(json.is_array(), "a list is expected");
    for (std::size_t position = 0; position < json.size(); ++position) {
      const Step step(*this, position);
      read_element(json[position]);
    }
  }

  // A position in the list, an object that is in none, or null.
  template <class Target>
  void read_reference(const Json& json, THandle<Target>& handle) {
    handle = THandle<Target>();
    if (json.is_null()) return;
    if (json.is_object()) {
      handle = THandle<Target>(new Target);
      if constexpr (requires { handle->first; }) {
        read_bond(json, *handle);
      } else {
        read(json, *handle);
      }
      return;
    }
    const List<Target>& list = list_of<Target>();
    int position = 0;
    read(json, position);
    if (position < 0 || static_cast<std::size_t>(position) >= list.size()) {
      fail("position " + std::to_string(position) + " is not in a list of " + std::to_string(list.size()));
    }
    handle = list[static_cast<std::size_t>(position)];
  }

  template <class Target>
  void member_reference(const Json& object, const char* name, THandle<Target>& handle) {
    const auto found = object.find(name);
    const Step step(*this, name);
    if (found == object.end()) {
      absent_.push_back(place());
    } else {
      read_reference(*found, handle);
    }
  }

  void read_latin_1(const Json& json, std::string& text) const;

  // What an archive holds is never null.
  template <class Target>
  void require_each(const std::vector<THandle<Target>>& list, const char* name, const char* what) {
    const Step step(*this, name);
    for (std::size_t position = 0; position < list.size(); ++position) {
      const Step element(*this, position);
      expect(!list[position].is_null(), what);
    }
  }

  void require_ends_in_list(const Connectivity& connectivity);

  template <class Bond>
  void read_bond(const Json& json, Bond& bond) {
    expect(json.is_object(), "an object is expected");
    member_reference(json, "first", bond.first);
    member_reference(json, "second", bond.second);
    member(json, "type", bond.type);
    note_unknown(json, {"first", "second", "type"});
  }

  template <class Graph>
  void read_graph(const Json& json, Graph& graph) {
    expect(json.is_object(), "an object is expected");
    member(json, "atoms", graph.atoms);
    list_of<typename std::remove_cvref_t<decltype(*graph.atoms.front())>>() = graph.atoms;
    const auto bonds = json.find("bonds");
    const Step step(*this, "bonds");
    if (bonds == json.end()) {
      absent_.push_back(place());
    } else {
      using GraphBond = std::remove_cvref_t<decltype(*graph.bonds.front())>;
      for_each_element(*bonds, [&](const Json& element) {
        THandle<GraphBond>& bond = graph.bonds.emplace_back();
        if (element.is_null()) return;
        bond = THandle<GraphBond>(new GraphBond);
        read_bond(element, *bond);
      });
      list_of<GraphBond>() = graph.bonds;
    }
    note_unknown(json, {"atoms", "bonds"});
  }

  template <class One, class Other>
  void read_pairs(const Json& object, const char* name, std::vector<std::pair<One, Other>>& pairs) {
    const auto found = object.find(name);
    const Step step(*this, name);
    if (found == object.end()) {
      absent_.push_back(place());
      return;
    }
    for_each_element(*found, [&](const Json& element) {
      expect(element.is_array() && element.size() == 2, "a pair is expected");
      auto& [one, other] = pairs.emplace_back();
      read_reference(element[0], one);
      read_reference(element[1], other);
    });
  }

  void note_unknown_names(const Json& object, const std::vector<std::string_view>& known);

  // A cross-reference whose type is not known is no value of an archive.
  template <class E>
  static bool may_be_stored(E value) {
    if constexpr (std::is_same_v<E, DatabaseCrossReference::CrossReferenceType>) return value != E::unknown;
    return true;
  }

  // The values that a field may have, with their texts, in the order of the values.
  template <class E>
  static std::vector<std::pair<E, std::string>> members_of() {
    const auto texts = enum_texts<E>();
    std::vector<std::pair<E, std::string>> members(texts->begin(), texts->end());
    std::erase_if(members, [](const auto& member) { return !may_be_stored(member.first); });
    std::sort(members.begin(), members.end());
    return members;
  }

  // "-1 is none of: unknown; x-ray; neutron". Some texts have commas.
  template <class Members>
  [[noreturn]] void fail_as_no_member(const std::string& value, const Members& members) const {
    std::string allowed;
    for (const auto& [known, text] : members) {
      if (!allowed.empty()) allowed += "; ";
      allowed += text;
    }
    fail(value + " is none of: " + allowed);
  }

  template <class Target>
  List<Target>& list_of() {
    return std::get<List<Target>>(lists_);
  }

  std::vector<std::string>& absent_;
  std::vector<std::string>& unknown_;
  std::string entry_;
  std::string place_;
  std::tuple<List<Atom>, List<Bond>, List<DiagramAtom>, List<DiagramBond>, List<ConnectivityAtom>,
             List<ConnectivityBond>>
      lists_;
};
