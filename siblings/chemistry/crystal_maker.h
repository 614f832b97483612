// What a crystal is built from: a unit cell and the atoms of its asymmetric unit.
//
// Bytes: those of the cell, the atom count as an int, then each atom.
#pragma once

#include <chemistry/atom.h>
#include <chemistry/cell.h>
#include <chemistry/export.h>
#include <utilities/archive.h>
#include <utilities/fields.h>
#include <utilities/t_handle.h>

#include <iosfwd>
#include <tuple>
#include <vector>

class CHEMISTRY_EXPORT CrystalMaker {
 public:
  // A default cell and no atoms.
  CrystalMaker();

  // Shares the cell and the atoms. Throws NullHandleError when there is no cell.
  explicit CrystalMaker(const THandle<Cell>& cell, std::vector<THandle<Atom>> atoms = {});

  CrystalMaker(const CrystalMaker&) = default;
  CrystalMaker& operator=(const CrystalMaker&) = default;
  virtual ~CrystalMaker() = default;

  // Never null.
  [[nodiscard]] THandle<Cell> cell() const { return cell_; }
  [[nodiscard]] const std::vector<THandle<Atom>>& atoms() const& { return atoms_; }
  const std::vector<THandle<Atom>>& atoms() const&& = delete;

  // Throws NullHandleError for a null atom; what precedes it has been written.
  virtual void write(Archive& archive) const;
  // Others who share the cell or the atoms keep them as they were: new ones are filled. Throws ArchiveError
  // where the stream ends or a count is negative; what was read before stays.
  virtual void read(Archive& archive);
  // "cell: ", the cell, ", atoms: 12" and a line end.
  virtual void print(std::ostream& os) const;

  // In archive order. The cell is archived by its own virtual operations.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"cell", &CrystalMaker::cell_},
                      ReadOnlyField{"atoms", &CrystalMaker::atoms_}};
  }

 private:
  THandle<Cell> cell_;
  std::vector<THandle<Atom>> atoms_;
};
