#include <database_entry/entries/crystal_structure_database_entry.h>

#include <ostream>

namespace {

// The component's own text decides how its item ends; only a null one gets a line end here.
template <class Component>
void print_item(std::ostream& os, const char* label, const THandle<Component>& component) {
  os << label << ':';
  if (component.is_null()) {
    os << ' ' << component << '\n';
  } else {
    os << '\n' << component;
  }
}

}  // namespace

CrystalStructureDatabaseEntry::~CrystalStructureDatabaseEntry() = default;

void CrystalStructureDatabaseEntry::print(std::ostream& os) const {
  os << "identifier: ";
  identifier().print(os);
  os << '\n';
  print_item(os, "crystal maker", crystal_maker());
  print_item(os, "publication", publication());
  print_item(os, "experimental info", experimental_info());
  print_item(os, "editors info", editors_info());
  print_item(os, "chemical info", chemical_info());
  print_item(os, "crystal info", crystal_info());
  print_item(os, "chemical diagram", chemical_diagram());
  print_item(os, "connectivity info", connectivity_info());
  print_item(os, "cross reference info", cross_reference_info());
  print_item(os, "deposition info", deposition_info());
}
