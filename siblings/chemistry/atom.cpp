#include <chemistry/atom.h>
#include <utilities/archiving/field_list.h>

void Atom::write(Archive& archive) const {
  write_fields(archive, *this);
}

void Atom::read(Archive& archive) {
  read_fields(archive, *this);
}
