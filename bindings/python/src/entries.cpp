// The abstract, the immediate and the deferred entry, data sources, the connectivity entry, the checks.
#include <database_entry/checks/entry_checks.h>
#include <database_entry/entries/chemical_connectivity_database_entry.h>
#include <database_entry/entries/crystal_structure_deferred_database_entry.h>
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>

#include "entry_bytes.h"
#include "list.h"
#include "source.h"

namespace {

using Entry = CrystalStructureDatabaseEntry;
using Immediate = CrystalStructureImmediateDatabaseEntry;
using Deferred = CrystalStructureDeferredDatabaseEntry;
using Source = CrystalStructureDatabaseEntryDataSource;

// A component as an attribute of an entry.
template <class Row>
struct BoundComponent {
  using Handle = THandle<typename Row::Type>;

  static PyObject* get(PyObject* self, void*) noexcept {
    return guarded([&] { return Converter<Handle>::to(Row::get(object_of<Entry>(self))).release().ptr(); });
  }

  static int set([[maybe_unused]] PyObject* self, [[maybe_unused]] PyObject* value, void*) noexcept {
    if constexpr (Row::has_setter) {
      try {
        if (value == nullptr) throw py::attribute_error("a component cannot be deleted; None takes it away");
        Row::set(object_of<Entry>(self), Converter<Handle>::from(value));
        return 0;
      } catch (...) {
        set_python_error();
      }
    }
    return -1;
  }
};

// The same components in an entry that has them all at hand.
Immediate gathered(const Entry& entry) {
  ComponentHandles handles;
  for_each_component([&](auto component) { handles[component] = component.get(entry); });
  return Immediate::from(entry.identifier(), handles);
}

void bind_abstract_entry(py::module_& module) {
  bound_name<Entry> = "CrystalStructureDatabaseEntry";
  py::class_<Entry, THandle<Entry>> bound(module, "CrystalStructureDatabaseEntry",
                                          class_documentation("CrystalStructureDatabaseEntry"));
  py::list names;
  py::dict types;
  for_each_component_in_entry_order([&](auto component) {
    using Bound = BoundComponent<decltype(component)>;
    using Handle = typename Bound::Handle;
    add_descriptor(
        bound, component.name, &Bound::get, component.has_setter ? &Bound::set : setter(nullptr),
        field_documentation("CrystalStructureDatabaseEntry", component.name, Converter<Handle>::name()));
    names.append(component.name);
    types[component.name] = py::make_tuple(Converter<Handle>::name(), component.has_setter);
  });
  bound.attr("_components") = py::tuple(names);
  bound.attr("_field_types") = types;
  bound.def_property(
      "identifier",
      [](const Entry& self) { return Converter<DatabaseEntryIdentifier>::to(self.identifier()); },
      [](Entry& self, py::handle identifier) {
        self.set_identifier(Converter<DatabaseEntryIdentifier>::from(identifier));
      },
      field_documentation("CrystalStructureDatabaseEntry", "identifier", "DatabaseEntryIdentifier").c_str());
  bound.def(
      "__str__", [](const Entry& self) { return Converter<std::string>::to(printed(self)); },
      "The summary: the identifier and ten components, each under its label.");
  bound.def("__eq__", [](const Entry& self, py::handle other) -> py::object {
    if (!py::isinstance<Entry>(other)) return py::reinterpret_borrow<py::object>(Py_NotImplemented);
    const Entry& right = object_of<Entry>(other.ptr());
    return py::bool_(&self == &right || are_stored_alike(self, right));
  });
  bound.attr("__hash__") = py::none();
  bound.def(
      "to_bytes",
      [](const Entry& self) {
        return py::bytes(archived_bytes([&](Archive& archive) { gathered(self).write(archive); }));
      },
      "The identifier and the ten archived components, none of which may be None, as an archive holds them.");
  bound.def("_stored_bytes", [](const Entry& self) { return py::bytes(stored_bytes(self)); });
}

// The components among keywords; TypeError for a keyword that is none.
ComponentHandles components_from(const py::kwargs& keywords) {
  ComponentHandles handles;
  std::size_t taken = 0;
  for_each_component([&](auto component) {
    if (!keywords.contains(component.name)) return;
    ++taken;
    naming("CrystalStructureImmediateDatabaseEntry", component.name, [&] {
      handles[component] =
          Converter<THandle<typename decltype(component)::Type>>::from(keywords[component.name]);
    });
  });
  if (taken != keywords.size()) throw py::type_error("an entry has sixteen components; see its _components");
  return handles;
}

void bind_immediate_entry(py::module_& module) {
  bound_name<Immediate> = "CrystalStructureImmediateDatabaseEntry";
  py::class_<Immediate, Entry, THandle<Immediate>> bound(
      module, "CrystalStructureImmediateDatabaseEntry",
      class_documentation("CrystalStructureImmediateDatabaseEntry"));
  bound.def(py::init([](py::handle identifier, py::handle crystal_maker, py::kwargs components) {
              const auto name = Converter<DatabaseEntryIdentifier>::from(identifier);
              if (crystal_maker.is_none())
                return THandle<Immediate>(new Immediate(Immediate::from(name, components_from(components))));
              const auto maker = Converter<THandle<CrystalMaker>>::from(crystal_maker);
              const bool has_cell = components.contains("cell");
              ComponentHandles handles = components_from(components);
              handles[component_row<ComponentKind::crystal_maker>] = maker;
              if (!has_cell)
                handles[component_row<ComponentKind::cell>] = THandle<Cell>(new Cell(*maker->cell()));
              return THandle<Immediate>(new Immediate(Immediate::from(name, handles)));
            }),
            py::arg("identifier") = "", py::arg("crystal_maker") = py::none(),
            "Shares each component, given by its name. With a crystal maker and no `cell`, the entry holds a "
            "copy of the crystal maker's cell.");
  bound.def_static(
      "from_bytes",
      [](const std::string& bytes) {
        THandle<Immediate> entry(
            new Immediate(Immediate::from(DatabaseEntryIdentifier(), ComponentHandles())));
        read_archived_bytes(bytes, [&](Archive& archive) { entry->read(archive); });
        return entry;
      },
      py::arg("bytes"));
  module.def("_entry_from_stored_bytes",
             [](const py::bytes& bytes) { return entry_from_stored_bytes(bytes); });
  module.def("_gathered",
             [](const Entry& entry) { return THandle<Immediate>(new Immediate(gathered(entry))); });
}

// Over a source of C++ itself, or over what the methods of an object say.
THandle<Deferred> deferred_entry_of(const py::object& object) {
  if (object.is_none()) return THandle<Deferred>(new Deferred(THandle<Source>()));
  const bool is_plain = py::isinstance<Source>(object) && !object.attr("_is_overridden").cast<bool>();
  if (is_plain) return THandle<Deferred>(new Deferred(py::cast<THandle<Source>>(object)));
  return THandle<Deferred>(new EntryOfPythonSource(new PythonSource(object)));
}

// The source in Python that goes with this object; null where C++ holds the entry too, or there is none.
PythonSource* own_source_of(PyObject* self) {
  auto* const instance = reinterpret_cast<py::detail::instance*>(self);
  if (!instance->simple_layout || !instance->simple_holder_constructed) return nullptr;
  const auto* const holder = reinterpret_cast<THandle<Deferred>*>(&instance->simple_value_holder[1]);
  if (holder->is_null() || holder->use_count() != 1) return nullptr;
  const auto* const entry = dynamic_cast<const EntryOfPythonSource*>(holder->get());
  return entry == nullptr ? nullptr : entry->own_source();
}

// A source that holds its entry is a circle, which goes when nobody else holds a part of it.
void take_part_in_collection(PyHeapTypeObject* heap_type) {
  PyTypeObject& type = heap_type->ht_type;
  type.tp_flags |= Py_TPFLAGS_HAVE_GC;
  // The object is taken off the collector's list before it goes.
  static const destructor inherited = type.tp_base->tp_dealloc;
  type.tp_dealloc = [](PyObject* self) {
    PyObject_GC_UnTrack(self);
    inherited(self);
  };
  type.tp_traverse = [](PyObject* self, visitproc visit, void* arg) {
    Py_VISIT(Py_TYPE(self));
    if (const PythonSource* const source = own_source_of(self)) Py_VISIT(source->object());
    return 0;
  };
  type.tp_clear = [](PyObject* self) {
    if (PythonSource* const source = own_source_of(self)) source->forget();
    return 0;
  };
}

void bind_deferred_entry(py::module_& module) {
  bound_name<Source> = "CrystalStructureDatabaseEntryDataSource";
  py::class_<Source, THandle<Source>> source(module, "CrystalStructureDatabaseEntryDataSource",
                                             class_documentation("CrystalStructureDatabaseEntryDataSource"));
  source.def(py::init([] { return THandle<Source>(new Source); }));
  source.def("identifier",
             [](const Source& self) { return Converter<DatabaseEntryIdentifier>::to(self.identifier()); });
  for_each_component([&](auto component) {
    using Handle = THandle<typename decltype(component)::Type>;
    source.def(component.name,
               [component](const Source& self) { return Converter<Handle>::to(component.fetch(self)); });
  });
  // A class of Python's that derives from it may have methods of its own.
  source.def_property_readonly("_is_overridden", [](const py::object& self) {
    return !py::type::of(self).is(py::type::of<Source>());
  });

  bound_name<Deferred> = "CrystalStructureDeferredDatabaseEntry";
  py::class_<Deferred, Entry, THandle<Deferred>> deferred(
      module, "CrystalStructureDeferredDatabaseEntry",
      class_documentation("CrystalStructureDeferredDatabaseEntry"),
      py::custom_type_setup(&take_part_in_collection));
  deferred.def(py::init(&deferred_entry_of), py::arg("source"),
               "Asks the source for the identifier now, and for each component when it is first wanted.");
}

void bind_connectivity_entry(py::module_& module) {
  using Small = ChemicalConnectivityDatabaseEntry;
  bound_name<Small> = "ChemicalConnectivityDatabaseEntry";
  py::class_<Small, THandle<Small>> bound(module, "ChemicalConnectivityDatabaseEntry",
                                          class_documentation("ChemicalConnectivityDatabaseEntry"));
  bound.def(py::init([](py::handle identifier, py::handle name, const THandle<Connectivity>& connectivity) {
              return THandle<Small>(new Small(Converter<DatabaseEntryIdentifier>::from(identifier),
                                              Converter<std::string>::from(name), connectivity));
            }),
            py::arg("identifier") = "", py::arg("name") = "",
            py::arg("connectivity") = THandle<Connectivity>());
  bound.def(
      "set_identifier",
      [](Small& self, py::handle text) {
        self.set_identifier(Converter<DatabaseEntryIdentifier>::from(text));
      },
      py::arg("text"), "Takes \"12.5 benzene.qdx\" apart into identifier and name.");
  bound.def_property(
      "identifier", [](const Small& self) { return Converter<DatabaseEntryIdentifier>::to(self.identifier); },
      [](Small& self, py::handle text) { self.identifier = Converter<DatabaseEntryIdentifier>::from(text); });
  bound.def_property(
      "name", [](const Small& self) { return Converter<std::string>::to(self.name); },
      [](Small& self, py::handle name) { self.name = Converter<std::string>::from(name); });
  bound.def_property(
      "connectivity", [](const Small& self) { return self.connectivity; },
      [](Small& self, const THandle<Connectivity>& connectivity) { self.connectivity = connectivity; });
}

// Runs a check and gives what it recorded; the records that were there before stay.
template <class Check>
py::list failures_of(const Check& check) {
  const std::size_t before = TestSuite::failures().size();
  check();
  py::list messages;
  for (std::size_t i = before; i < TestSuite::failures().size(); ++i)
    messages.append(Converter<std::string>::to(TestSuite::failures()[i]));
  return messages;
}

void bind_checks(py::module_& module) {
  module.def(
      "test_database_entry_summary",
      [](const std::string& test_name, const Entry& entry, const std::string& identifier, double a,
         int number_of_symmetry_operators) {
        return failures_of([&] {
          test_database_entry_summary(test_name, entry, identifier, a, number_of_symmetry_operators);
        });
      },
      py::arg("test_name"), py::arg("entry"), py::arg("identifier"), py::arg("a"),
      py::arg("number_of_symmetry_operators"),
      "Holds identifier, a (angstrom, within 1e-7) and the number of operators against an entry. Gives the "
      "differences as texts; an empty list is good.");
  module.def(
      "test_database_entry_handles",
      [](const std::string& test_name, const Entry& entry) {
        return failures_of([&] { test_database_entry_handles(test_name, entry); });
      },
      py::arg("test_name"), py::arg("entry"),
      "Whether four components are the same objects at two successive calls. Gives the differences.");
}

}  // namespace

void bind_entries(py::module_& module) {
  bind_abstract_entry(module);
  bind_immediate_entry(module);
  bind_deferred_entry(module);
  bind_connectivity_entry(module);
  bind_checks(module);
}
