#include <chemistry/crystal_maker.h>
#include <utilities/archiving/field_list.h>
#include <utilities/unshared.h>

#include <ostream>
#include <utility>

CrystalMaker::CrystalMaker() : cell_(THandle<Cell>::make()) {}

CrystalMaker::CrystalMaker(const THandle<Cell>& cell, std::vector<THandle<Atom>> atoms)
    : cell_(cell), atoms_(std::move(atoms)) {
  if (cell.is_null()) THandleCommon::null_handle_error();
}

void CrystalMaker::write(Archive& archive) const {
  cell_->write(archive);
  write_fields(archive, atoms_);
}

void CrystalMaker::read(Archive& archive) {
  atoms_.clear();
  unshared(cell_).read(archive);
  read_fields(archive, atoms_);
}

void CrystalMaker::print(std::ostream& os) const {
  os << "cell: ";
  cell_->print(os);
  os << ", atoms: " << atoms_.size() << std::endl;
}
