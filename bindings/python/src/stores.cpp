// Stores and queries. The class that users see is stores.py.
//
// A store has a lock of its own, which is taken after the interpreter's is let go, and let go before it is
// taken again: threads may share a store. What touches handles that Python may hold too (put, the components
// of a source) keeps the interpreter's lock.
#include <database_entry/entries/crystal_structure_deferred_database_entry.h>
#include <stores/entry_store.h>

#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "record.h"

namespace {

using Source = CrystalStructureDatabaseEntryDataSource;

struct SharedStore {
  explicit SharedStore(std::unique_ptr<EntryStore> opened) : store(std::move(opened)) {}
  std::unique_ptr<EntryStore> store;  // null after close()
  std::mutex mutex;
};

class LockedSource : public Source {
 public:
  LockedSource(std::shared_ptr<SharedStore> shared, THandle<Source> source)
      : shared_(std::move(shared)), source_(std::move(source)) {}

  [[nodiscard]] DatabaseEntryIdentifier identifier() const override {
    const std::scoped_lock lock(shared_->mutex);
    return source_->identifier();
  }

#define DATABASE_ENTRY_LOCKED(number, name, label, Type) \
  [[nodiscard]] THandle<Type> name() const override {    \
    const std::scoped_lock lock(shared_->mutex);         \
    return source_->name();                              \
  }
  DATABASE_ENTRY_COMPONENTS(DATABASE_ENTRY_LOCKED, DATABASE_ENTRY_LOCKED)
#undef DATABASE_ENTRY_LOCKED

 private:
  std::shared_ptr<SharedStore> shared_;
  THandle<Source> source_;
};

class Store {
 public:
  explicit Store(std::unique_ptr<EntryStore> store)
      : shared_(std::make_shared<SharedStore>(std::move(store))) {}

  // Objects of the call's own: the interpreter runs on meanwhile.
  template <class Work>
  auto apart(const Work& work) const {
    const py::gil_scoped_release others_may_run;
    const std::scoped_lock lock(shared_->mutex);
    return work(opened());
  }

  // Objects that Python may hold too.
  template <class Work>
  auto together(const Work& work) const {
    const std::scoped_lock lock(shared_->mutex);
    return work(opened());
  }

  [[nodiscard]] THandle<Source> source(const DatabaseEntryIdentifier& identifier, Prefetch prefetch) const {
    auto plain = together([&](EntryStore& store) { return store.source(identifier, prefetch); });
    return THandle<Source>(new LockedSource(shared_, plain));
  }

  void close() {
    const std::scoped_lock lock(shared_->mutex);
    shared_->store.reset();
  }
  [[nodiscard]] bool is_closed() const { return shared_->store == nullptr; }

 private:
  [[nodiscard]] EntryStore& opened() const {
    if (shared_->store == nullptr) throw std::invalid_argument("the store is closed");
    return *shared_->store;
  }

  std::shared_ptr<SharedStore> shared_;
};

py::object number_object(double count) {
  return Converter<double>::to(count);
}

py::object column_object(const std::vector<ElementCount>& elements) {
  py::dict counts;
  for (const ElementCount& element : elements)
    counts[Converter<std::string>::to(element.symbol)] = number_object(element.count);
  return counts;
}
template <class T>
py::object column_object(const T& value) {
  return Converter<T>::to(value);
}

void bind_columns(py::module_& module) {
  py::class_<EntryColumns> columns(module, "EntryColumns", class_documentation("EntryColumns"));
  py::list names;
  py::dict short_names;
  for_each_entry_column([&](const auto& column) {
    const auto member = column.member;
    const py::cpp_function get([member](const EntryColumns& self) { return column_object(self.*member); });
    columns.def_property_readonly(column.sql_name, get);
    names.append(column.sql_name);
    if (*column.short_name != '\0') short_names[column.short_name] = column.sql_name;
  });
  columns.attr("_names") = py::tuple(names);
  columns.attr("_short_names") = short_names;
  module.def("_columns_of",
             [](const CrystalStructureDatabaseEntry& entry) { return entry_columns(entry, EntryOrigin{}); });
}

EntryQuery::Operator operator_of(const std::string& text) {
  using Operator = EntryQuery::Operator;
  const std::pair<const char*, Operator> operators[] = {
      {"=", Operator::equal},           {"!=", Operator::not_equal},       {"<", Operator::less},
      {"<=", Operator::at_most},        {">", Operator::greater},          {">=", Operator::at_least},
      {"contains", Operator::contains}, {"starts", Operator::starts_with}, {"ends", Operator::ends_with}};
  for (const auto& [name, value] : operators)
    if (name == text) return value;
  throw std::invalid_argument("a comparison is =, !=, <, <=, >, >=, contains, starts or ends, not '" + text +
                              "'");
}

void bind_query(py::module_& module) {
  py::class_<EntryQuery>(module, "EntryQuery", class_documentation("EntryQuery"))
      .def(py::init<>(), "Every entry.")
      .def_static("from_text", &EntryQuery::from_text, py::arg("text"),
                  "The short form: \"Ti>=1,O,year=1960..1990,author=wyckoff\". Raises QueryError.")
      .def_static("from_filter", &EntryQuery::from_filter, py::arg("filter"),
                  "A filter of OPTIMADE: 'elements HAS \"Ti\" AND nelements=2'. Raises QueryError.")
      .def_static(
          "compare",
          [](const std::string& property, const std::string& comparison, py::handle value) {
            return PyUnicode_Check(value.ptr()) ? EntryQuery::compare(property, operator_of(comparison),
                                                                      Converter<std::string>::from(value))
                                                : EntryQuery::compare(property, operator_of(comparison),
                                                                      Converter<double>::from(value));
          },
          py::arg("property"), py::arg("comparison"), py::arg("value"))
      .def_static("between", &EntryQuery::between, py::arg("property"), py::arg("lower"), py::arg("upper"),
                  "Both included.")
      .def_static("known", &EntryQuery::known, py::arg("property"))
      .def_static(
          "element",
          [](const std::string& symbol, const std::string& comparison, double count) {
            return EntryQuery::element(symbol, operator_of(comparison), count);
          },
          py::arg("symbol"), py::arg("comparison") = ">=", py::arg("count") = 1.0)
      .def_static(
          "cell",
          [](py::handle parameters, double percent, char centring) {
            return EntryQuery::cell(Converter<std::array<double, 6>>::from(parameters), percent, centring);
          },
          py::arg("parameters"), py::arg("percent") = 1.0, py::arg("centring") = 'P',
          "Lattices like this one in whatever setting; angstrom and degrees.")
      .def("__and__", [](const EntryQuery& a, const EntryQuery& b) { return a && b; })
      .def("__or__", [](const EntryQuery& a, const EntryQuery& b) { return a || b; })
      .def("__invert__", [](const EntryQuery& query) { return !query; })
      .def("__eq__",
           [](const EntryQuery& a, py::handle b) {
             return py::isinstance<EntryQuery>(b) && a == py::cast<const EntryQuery&>(b);
           })
      .def(
          "text",
          [](const EntryQuery& query) { return Converter<std::optional<std::string>>::to(query.text()); },
          "In the short form, or None where it has no words for it.")
      .def(
          "filter",
          [](const EntryQuery& query) { return Converter<std::optional<std::string>>::to(query.filter()); },
          "In the filter language, or None.")
      .def("matches", &EntryQuery::matches, py::arg("columns"))
      .attr("__hash__") = py::none();
}

std::vector<std::string> texts_of(const std::vector<DatabaseEntryIdentifier>& identifiers) {
  std::vector<std::string> texts;
  texts.reserve(identifiers.size());
  for (const DatabaseEntryIdentifier& identifier : identifiers) texts.push_back(identifier.text());
  return texts;
}

SelectOptions options_of(const py::object& after, const py::object& limit) {
  SelectOptions options;
  if (!after.is_none()) options.after = Converter<std::string>::from(after);
  if (!limit.is_none()) options.limit = py::cast<std::size_t>(limit);
  return options;
}

OnDuplicate rule_of(const std::string& text) {
  if (text == "keep") return OnDuplicate::keep;
  if (text == "replace") return OnDuplicate::replace;
  if (text == "refuse") return OnDuplicate::refuse;
  throw std::invalid_argument("on_duplicate is 'keep', 'replace' or 'refuse', not '" + text + "'");
}

const char* text_of(StoreResult result) {
  switch (result) {
    case StoreResult::added:
      return "added";
    case StoreResult::replaced:
      return "replaced";
    case StoreResult::unchanged:
      return "unchanged";
    case StoreResult::kept:
      break;
  }
  return "kept";
}

py::dict plain(const StoreReport& report) {
  py::dict fields;
  fields["entries"] = report.entries;
  fields["components"] = report.components;
  fields["bytes"] = report.bytes;
  py::list problems;
  for (const StoreProblem& problem : report.problems) {
    problems.append(py::make_tuple(Converter<std::string>::to(problem.entry),
                                   Converter<std::string>::to(problem.component),
                                   Converter<std::string>::to(problem.text)));
  }
  fields["problems"] = problems;
  return fields;
}

DatabaseEntryIdentifier identifier_of(py::handle object) {
  return Converter<DatabaseEntryIdentifier>::from(object);
}

void bind_store(py::module_& module) {
  py::class_<Store> store(module, "_Store");
  store.def(py::init([](const std::string& place, bool make) {
    const py::gil_scoped_release others_may_run;
    return std::make_unique<Store>(make ? init_entry_store(place) : open_entry_store(place));
  }));
  store.def("place", [](const Store& self) {
    return Converter<std::string>::to(self.together([](EntryStore& s) { return s.place(); }));
  });
  store.def("is_read_only",
            [](const Store& self) { return self.together([](EntryStore& s) { return s.is_read_only(); }); });
  store.def("entry", [](const Store& self, py::handle identifier) {
    const auto name = identifier_of(identifier);
    return self.apart([&](EntryStore& s) { return s.entry(name); });
  });
  store.def("source", [](const Store& self, py::handle identifier, bool all) {
    return self.source(identifier_of(identifier), all ? Prefetch::all : Prefetch::none);
  });
  store.def("contains", [](const Store& self, py::handle identifier) {
    const auto name = identifier_of(identifier);
    return self.apart([&](EntryStore& s) { return s.contains(name); });
  });
  store.def("columns", [](const Store& self, py::handle identifier) {
    const auto name = identifier_of(identifier);
    return self.apart([&](EntryStore& s) { return s.columns(name); });
  });
  store.def("select",
            [](const Store& self, const EntryQuery& query, const py::object& after, const py::object& limit) {
              const SelectOptions options = options_of(after, limit);
              return Converter<std::vector<std::string>>::to(
                  self.apart([&](EntryStore& s) { return texts_of(s.select(query, options)); }));
            });
  store.def("select_columns",
            [](const Store& self, const EntryQuery& query, const py::object& after, const py::object& limit) {
              const SelectOptions options = options_of(after, limit);
              auto found = self.apart([&](EntryStore& s) { return s.select_columns(query, options); });
              py::list rows(found.size());
              for (std::size_t i = 0; i < found.size(); ++i) rows[i] = py::cast(std::move(found[i]));
              return rows;
            });
  store.def("count", [](const Store& self, const EntryQuery& query) {
    return self.apart([&](EntryStore& s) { return s.count(query); });
  });
  store.def("tally", [](const Store& self, const std::string& column, const EntryQuery& query) {
    const auto counts = self.apart([&](EntryStore& s) { return s.tally(column, query); });
    py::dict found;
    for (const auto& [value, count] : counts) found[Converter<std::string>::to(value)] = count;
    return found;
  });
  store.def("put_all", [](const Store& self, const py::iterable& entries, const std::string& on_duplicate) {
    std::vector<EntryStore::Put> puts;
    std::vector<py::object> kept;
    for (const py::handle item : entries) {
      const auto row = py::reinterpret_borrow<py::tuple>(item);
      kept.push_back(row[0]);
      const auto* const entry = py::cast<const CrystalStructureDatabaseEntry*>(kept.back());
      if (entry == nullptr) throw_type_error("an entry", kept.back());
      puts.push_back({entry, EntryOrigin{.file = Converter<std::string>::from(row[1]),
                                         .block = Converter<std::string>::from(row[2])}});
    }
    const auto results = self.together([&](EntryStore& s) { return s.put_all(puts, rule_of(on_duplicate)); });
    py::list texts;
    for (const StoreResult result : results) texts.append(text_of(result));
    return texts;
  });
  store.def("remove", [](const Store& self, py::handle identifier) {
    const auto name = identifier_of(identifier);
    self.apart([&](EntryStore& s) {
      s.remove(name);
      return 0;
    });
  });
  store.def("verify",
            [](const Store& self) { return plain(self.apart([](EntryStore& s) { return s.verify(); })); });
  store.def("reindex",
            [](const Store& self) { return plain(self.apart([](EntryStore& s) { return s.reindex(); })); });
  store.def("close", &Store::close);
  store.def_property_readonly("closed", &Store::is_closed);
}

}  // namespace

void bind_stores(py::module_& module) {
  bind_columns(module);
  bind_query(module);
  bind_store(module);
}
