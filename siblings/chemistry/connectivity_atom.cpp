#include <chemistry/connectivity_atom.h>
#include <utilities/field_list.h>

namespace {

// In archive order.
template <class SomeAtom>
auto fields(SomeAtom& atom) {
  return std::tie(atom.element, atom.label, atom.charge, atom.hydrogen_count);
}

}  // namespace

void ConnectivityAtom::write(Archive& archive) const {
  write_fields(archive, fields(*this));
}

void ConnectivityAtom::read(Archive& archive) {
  read_fields(archive, fields(*this));
}
