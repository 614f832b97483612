#include <chemistry/connectivity_atom.h>
#include <utilities/archiving/field_list.h>

void ConnectivityAtom::write(Archive& archive) const {
  write_fields(archive, *this);
}

void ConnectivityAtom::read(Archive& archive) {
  read_fields(archive, *this);
}
