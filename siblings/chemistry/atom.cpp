#include <chemistry/atom.h>
#include <utilities/field_list.h>

namespace {

// In archive order.
template <class SomeAtom>
auto fields(SomeAtom& atom) {
  return std::tie(atom.label, atom.element, atom.position.x, atom.position.y, atom.position.z,
                  atom.occupancy);
}

}  // namespace

void Atom::write(Archive& archive) const {
  write_fields(archive, fields(*this));
}

void Atom::read(Archive& archive) {
  read_fields(archive, fields(*this));
}
