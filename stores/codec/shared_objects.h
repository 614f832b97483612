// Atoms and bonds that several components of an entry hold, as a store keeps them: each once, in one
// component, and as a reference to it in the others. Internal: for the layouts of components.
#pragma once

#include <chemistry/atom.h>
#include <chemistry/bond.h>
#include <chemistry/connectivity_atom.h>
#include <chemistry/connectivity_bond.h>
#include <chemistry/diagram_atom.h>
#include <chemistry/diagram_bond.h>
#include <utilities/t_handle.h>

#include <array>
#include <tuple>
#include <unordered_map>
#include <vector>

// The objects that live in one component, in their order.
template <template <class> class Table>
using PerSharedType = std::tuple<Table<Atom>, Table<Bond>, Table<DiagramAtom>, Table<DiagramBond>,
                                 Table<ConnectivityAtom>, Table<ConnectivityBond>>;

template <class T>
using ObjectTable = std::vector<THandle<T>>;
using SharedObjects = PerSharedType<ObjectTable>;

// Where an object lives: the kind of the component, 0 for a null handle, and the position in its table.
struct SharedReference {
  int kind = 0;
  int position = 0;
};

// Where each object of an entry lives, while the entry is written.
class SharedIndex {
 public:
  // Objects that live in the component of this kind, in the order of its table. The first place of an object
  // counts.
  template <class T>
  void add(int kind, const std::vector<THandle<T>>& objects) {
    int position = 0;
    for (const THandle<T>& object : objects) {
      if (!object.is_null()) table<T>().emplace(object.get(), SharedReference{kind, position});
      ++position;
    }
  }

  // Whether the object had no place and now lives in that component; it goes to the end of its table.
  template <class T>
  bool settle(int kind, const THandle<T>& object, std::vector<THandle<T>>& own) {
    if (object.is_null()) return false;
    if (!table<T>().emplace(object.get(), SharedReference{kind, static_cast<int>(own.size())}).second)
      return false;
    own.push_back(object);
    return true;
  }

  template <class T>
  [[nodiscard]] SharedReference find(const THandle<T>& object) const {
    if (object.is_null()) return {};
    return std::get<Index<T>>(tables_).at(object.get());
  }

 private:
  template <class T>
  using Index = std::unordered_map<const T*, SharedReference>;

  template <class T>
  Index<T>& table() {
    return std::get<Index<T>>(tables_);
  }

  PerSharedType<Index> tables_;
};
