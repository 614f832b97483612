// The extension module: database_entry (the package) gives its names to the world.
#include "python.h"

PYBIND11_MODULE(_database_entry, module) {
  module.doc() = "Inside of the package database_entry.";
  bind_errors(module);
  bind_values(module);
  bind_chemistry(module);
  bind_experiment(module);
  bind_records(module);
  bind_references(module);
  bind_entries(module);
  bind_archives(module);
  bind_exchange(module);
  bind_stores(module);
  bind_lattice(module);
  bind_perception(module);
}
