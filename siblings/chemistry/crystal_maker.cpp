#include <chemistry/crystal_maker.h>
#include <utilities/sequence_encoding.h>
#include <utilities/unshared.h>

#include <algorithm>
#include <ostream>
#include <utility>

CrystalMaker::CrystalMaker() : cell_(THandle<Cell>::make()) {}

CrystalMaker::CrystalMaker(const THandle<Cell>& cell, std::vector<THandle<Atom>> atoms)
    : cell_(cell), atoms_(std::move(atoms)) {
  if (cell.is_null()) THandleCommon::null_handle_error();
}

void CrystalMaker::write(Archive& archive) const {
  cell_->write(archive);
  archive << static_cast<int>(atoms_.size());
  for (const THandle<Atom>& atom : atoms_) atom->write(archive);
}

void CrystalMaker::read(Archive& archive) {
  atoms_.clear();
  unshared(cell_).read(archive);
  const std::size_t count = read_count(archive);
  atoms_.reserve(std::min(count, sequence_encoding::believed_count));
  for (std::size_t index = 0; index < count; ++index) {
    const THandle<Atom> atom = THandle<Atom>::make();
    atom->read(archive);
    atoms_.push_back(atom);
  }
}

void CrystalMaker::print(std::ostream& os) const {
  os << "cell: ";
  cell_->print(os);
  os << ", atoms: " << atoms_.size() << std::endl;
}
