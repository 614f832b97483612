#include <database_entry/entries/components.h>

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
  for_each_component_in_entry_order([&](auto component) {
    if constexpr (component.printed) print_item(os, component.label, component.get(*this));
  });
}
