// Values of entries as JSON, made from the fields of the records.
// Internal: callers want exchange/entry_json.h.
#pragma once

#include <chemistry/atom.h>
#include <chemistry/bond.h>
#include <chemistry/chemical_diagram.h>
#include <chemistry/connectivity_info.h>
#include <chemistry/crystal_maker.h>
#include <chemistry/disorder_selector.h>
#include <chemistry/graph_match.h>
#include <database_entry/foundations/enum_text_mapping.h>
#include <database_entry/records/chemical_classification.h>
#include <database_entry/records/published_bond.h>
#include <database_entry/references/cross_reference_info.h>
#include <database_entry/references/deposition_info.h>
#include <utilities/date.h>
#include <utilities/fields.h>
#include <utilities/t_handle.h>

#include <nlohmann/json.hpp>
#include <string>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

template <class E>
inline constexpr bool has_texts = !std::is_null_pointer_v<std::remove_const_t<decltype(enum_texts<E>)>>;

class ValueWriter {
 public:
  using Json = nlohmann::ordered_json;

  static Json of(bool value) { return value; }
  static Json of(int value) { return value; }
  static Json of(double value);
  static Json of(const std::string& text);
  static Json of(const Date& date);
  static Json of(const CrystalSymmetryOperator& symmetry_operator);
  static Json of(const ChemicalClassification& classification);
  static Json of(const CrossReferenceInfo& info);
  static Json of(const DepositionInfo& info);
  Json of(const Cell& cell);
  Json of(const Atom& atom);
  Json of(const CrystalMaker& crystal);
  Json of(const ConnectivityInfo& info);
  Json of(const ChemicalDiagram& diagram) { return of_graph(diagram); }
  Json of(const DisorderSelector& selector);
  Json of(const PublishedBond& bond);

  template <class E>
  requires std::is_enum_v<E>
  static Json of(E value) {
    if constexpr (has_texts<E>) {
      const auto texts = enum_texts<E>();
      for (const auto& [known, text] : *texts) {
        if (known == value) return text;
      }
    }
    return static_cast<std::int32_t>(value);
  }

  template <class Target>
  Json of(const THandle<Target>& handle) {
    return handle.is_null() ? Json() : of(*handle);
  }

  template <class Value>
  Json of(const std::vector<Value>& values) {
    Json array = Json::array();
    for (const Value& value : values) array.push_back(of(value));
    return array;
  }

  template <class Record>
  requires requires { Record::fields(); }
  Json of(const Record& record) {
    Json object = Json::object();
    for_each_field(record, [&](const char* name, const auto& value) { object[name] = of(value); });
    return object;
  }

  template <class A1, class B1, class A2, class B2>
  Json of(const GraphMatch<A1, B1, A2, B2>& match) {
    const auto pairs = [&](const auto& list) {
      Json array = Json::array();
      for (const auto& [one, other] : list) array.push_back({reference(one), reference(other)});
      return array;
    };
    return {{"atoms", pairs(match.atoms)}, {"bonds", pairs(match.bonds)}};
  }

 private:
  // The position of what a list that was written before holds; the whole of anything else.
  template <class Target>
  Json reference(const THandle<Target>& handle) {
    if (handle.is_null()) return {};
    const auto found = positions_.find(handle.get());
    if (found != positions_.end()) return found->second;
    if constexpr (requires { handle->first; }) {
      return of_bond(*handle);
    } else {
      return of(*handle);
    }
  }

  template <class Bond>
  Json of_bond(const Bond& bond) {
    return {{"first", reference(bond.first)}, {"second", reference(bond.second)}, {"type", of(bond.type)}};
  }

  // Atoms, and bonds between them.
  template <class Graph>
  Json of_graph(const Graph& graph) {
    Json atoms = of(graph.atoms);
    remember(graph.atoms);
    Json bonds = Json::array();
    for (const auto& bond : graph.bonds) bonds.push_back(bond.is_null() ? Json() : of_bond(*bond));
    remember(graph.bonds);
    return {{"atoms", std::move(atoms)}, {"bonds", std::move(bonds)}};
  }

  template <class Target>
  void remember(const std::vector<THandle<Target>>& list) {
    for (std::size_t position = 0; position < list.size(); ++position) {
      if (!list[position].is_null()) positions_.emplace(list[position].get(), position);
    }
  }

  std::unordered_map<const void*, std::size_t> positions_;
};
