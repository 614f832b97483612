// A bond length as the authors published it.
//
// The atoms are shared with whoever else holds them. Threads: as every record, one at a time.
#pragma once

#include <chemistry/atom.h>
#include <database_entry/export.h>
#include <mathematics/uncertain_value.h>
#include <utilities/fields.h>
#include <utilities/t_handle.h>

#include <tuple>

class DATABASE_ENTRY_EXPORT PublishedBond {
 public:
  // No default constructor: a bond without atoms means nothing.
  PublishedBond(THandle<Atom> first_atom, THandle<Atom> second_atom, UncertainValue length, bool first_flag,
                bool second_flag);

  // The same atoms, as objects and in the same order, the same length and the same flags: A-B is not B-A.
  bool operator==(const PublishedBond& other) const;

  THandle<Atom> first_atom;
  THandle<Atom> second_atom;
  UncertainValue length;
  // Two properties of the bond that are carried and compared; their meaning is the caller's.
  bool first_flag;
  bool second_flag;

  // In the order of comparison.
  static constexpr auto fields() {
    return std::tuple{
        Field{"first_atom", &PublishedBond::first_atom}, Field{"second_atom", &PublishedBond::second_atom},
        Field{"length", &PublishedBond::length}, Field{"first_flag", &PublishedBond::first_flag},
        Field{"second_flag", &PublishedBond::second_flag}};
  }
};
