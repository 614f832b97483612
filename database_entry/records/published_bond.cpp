#include <database_entry/records/published_bond.h>

PublishedBond::PublishedBond(THandle<Atom> the_first_atom, THandle<Atom> the_second_atom,
                             UncertainValue the_length, bool the_first_flag, bool the_second_flag)
    : first_atom(the_first_atom),
      second_atom(the_second_atom),
      length(the_length),
      first_flag(the_first_flag),
      second_flag(the_second_flag) {}

bool PublishedBond::operator==(const PublishedBond& other) const {
  return equal_fields(*this, other);
}
