// Stores and queries. The class that users see is stores.py.
//
// A store has a lock of its own. Nobody waits for it with the interpreter's lock in hand, so that threads may
// share a store. What touches handles that Python may hold too (put, the components of a source) has both.
#include <database_entry/entries/crystal_structure_deferred_database_entry.h>
#include <stores/entry_store.h>

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "record.h"

namespace {

using Source = CrystalStructureDatabaseEntryDataSource;

struct SharedStore {
  explicit SharedStore(std::unique_ptr<EntryStore> opened) : store(std::move(opened)) {}
  std::shared_ptr<EntryStore> store;  // null after close()
  // An entry that is put may be one of the store's own, or ask a source in Python that uses the store.
  std::recursive_mutex mutex;
};

// The lock of a store, taken by a thread that has the interpreter's and has it again afterwards.
class StoreLock {
 public:
  explicit StoreLock(std::recursive_mutex& mutex) : lock_(mutex, std::try_to_lock) {
    if (lock_.owns_lock()) return;
    const py::gil_scoped_release others_may_run;
    lock_.lock();
  }

 private:
  std::unique_lock<std::recursive_mutex> lock_;
};

class LockedSource : public Source {
 public:
  LockedSource(std::shared_ptr<SharedStore> shared, THandle<Source> source)
      : shared_(std::move(shared)), source_(std::move(source)) {}

  [[nodiscard]] DatabaseEntryIdentifier identifier() const override { return source_->identifier(); }

#define DATABASE_ENTRY_LOCKED(number, name, label, Type) \
  [[nodiscard]] THandle<Type> name() const override {    \
    const StoreLock lock(shared_->mutex);                \
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
    const auto store = opened();
    return work(*store);
  }

  // Objects that Python may hold too.
  template <class Work>
  auto together(const Work& work) const {
    const StoreLock lock(shared_->mutex);
    const auto store = opened();
    return work(*store);
  }

  // Its bytes are all there; each component is made of them when it is first wanted.
  [[nodiscard]] THandle<CrystalStructureDeferredDatabaseEntry> entry(
      const DatabaseEntryIdentifier& identifier, Prefetch prefetch) const {
    const auto plain = together([&](EntryStore& store) { return store.source(identifier, prefetch); });
    return THandle<CrystalStructureDeferredDatabaseEntry>(
        new CrystalStructureDeferredDatabaseEntry(THandle<Source>(new LockedSource(shared_, plain))));
  }

  // Whether it is open or not.
  template <class Work>
  void locked(const Work& work) const {
    const StoreLock lock(shared_->mutex);
    work();
  }

  void close() {
    locked([&] { shared_->store.reset(); });
  }
  [[nodiscard]] bool is_closed() const {
    const StoreLock lock(shared_->mutex);
    return shared_->store == nullptr;
  }

 private:
  // Kept as long as it is used, whoever closes it meanwhile.
  [[nodiscard]] std::shared_ptr<EntryStore> opened() const {
    if (shared_->store == nullptr) throw std::invalid_argument("the store is closed");
    return shared_->store;
  }

  std::shared_ptr<SharedStore> shared_;
};

// One state of a store, as long as it is open. It goes before its store.
class Snapshot {
 public:
  explicit Snapshot(const Store& store)
      : store_(store), snapshot_(store.apart([](EntryStore& s) { return s.snapshot(); })) {}
  Snapshot(const Snapshot&) = delete;
  Snapshot& operator=(const Snapshot&) = delete;
  ~Snapshot() { close(); }

  void close() {
    if (snapshot_ == nullptr) return;
    store_.locked([&] { snapshot_.reset(); });
  }

 private:
  Store store_;
  std::unique_ptr<EntrySnapshot> snapshot_;
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

// As a stub has it.
template <class T>
std::string column_type() {
  return Converter<T>::name();
}
template <>
std::string column_type<std::vector<ElementCount>>() {
  return "Dict[str, float]";
}
template <>
std::string column_type<std::vector<std::string>>() {
  return "Tuple[str, ...]";
}

void bind_columns(py::module_& module) {
  py::class_<EntryColumns> columns(module, "EntryColumns", class_documentation("EntryColumns"));
  py::list names;
  py::dict types;
  py::dict short_names;
  for_each_entry_column([&](const auto& column) {
    const auto member = column.member;
    const py::cpp_function get([member](const EntryColumns& self) { return column_object(self.*member); });
    const std::string type = column_type<typename std::remove_cvref_t<decltype(column)>::Type>();
    columns.def_property_readonly(column.sql_name, get,
                                  field_documentation("EntryColumns", column.sql_name, type).c_str());
    names.append(column.sql_name);
    types[column.sql_name] = type;
    if (*column.short_name != '\0') short_names[column.short_name] = column.sql_name;
  });
  columns.attr("_names") = py::tuple(names);
  columns.attr("_types") = types;
  columns.attr("_short_names") = short_names;
  module.def("_columns_of",
             [](const CrystalStructureDatabaseEntry& entry) { return entry_columns(entry, EntryOrigin{}); });
}

std::vector<std::string> texts_of(const std::vector<DatabaseEntryIdentifier>& identifiers) {
  std::vector<std::string> texts;
  texts.reserve(identifiers.size());
  for (const DatabaseEntryIdentifier& identifier : identifiers) texts.push_back(identifier.text());
  return texts;
}

// What a query found: identifiers at once, the columns of all when those of one are first wanted.
class Selection {
 public:
  Selection(const Store& store, const EntryQuery& query, const SelectOptions& options)
      : store_(store), query_(query), options_(options) {
    identifiers_ = store_.apart([&](EntryStore& s) { return texts_of(s.select(query_, options_)); });
  }

  [[nodiscard]] const std::vector<std::string>& identifiers() const { return identifiers_; }

  // Throws EntryNotFound for an entry that was removed before the columns were read.
  const EntryColumns& columns(std::size_t position) {
    const std::string& identifier = identifiers_.at(position);
    if (!columns_) columns_ = store_.apart([&](EntryStore& s) { return s.select_columns(query_, options_); });
    if (position < columns_->size() && (*columns_)[position].identifier == identifier)
      return (*columns_)[position];
    // Something was put or removed meanwhile; both lists are in the order of identifiers.
    const auto is_before = [](const EntryColumns& one, const std::string& other) {
      return one.identifier < other;
    };
    const auto found = std::lower_bound(columns_->begin(), columns_->end(), identifier, is_before);
    if (found != columns_->end() && found->identifier == identifier) return *found;
    const DatabaseEntryIdentifier name(identifier);
    return later_[position] = store_.apart([&](EntryStore& s) { return s.columns(name); });
  }

 private:
  Store store_;
  EntryQuery query_;
  SelectOptions options_;
  std::vector<std::string> identifiers_;
  std::optional<std::vector<EntryColumns>> columns_;
  std::map<std::size_t, EntryColumns> later_;  // of entries that the query no longer finds
};

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
  store.def("entry", [](const Store& self, py::handle identifier, bool at_once) {
    return self.entry(identifier_of(identifier), at_once ? Prefetch::all : Prefetch::none);
  });
  py::class_<Selection>(module, "_Selection")
      .def(py::init(
          [](const Store& self, const EntryQuery& query, const py::object& after, const py::object& limit) {
            return std::make_unique<Selection>(self, query, options_of(after, limit));
          }))
      .def("identifiers",
           [](const Selection& self) { return Converter<std::vector<std::string>>::to(self.identifiers()); })
      .def("columns", &Selection::columns, py::return_value_policy::reference_internal);
  py::class_<Snapshot>(module, "_Snapshot").def(py::init<const Store&>()).def("close", &Snapshot::close);
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
      py::detail::make_caster<CrystalStructureDatabaseEntry> entry;
      if (kept.back().is_none() || !entry.load(kept.back(), false)) throw_type_error("an entry", kept.back());
      puts.push_back({&py::detail::cast_op<CrystalStructureDatabaseEntry&>(entry),
                      EntryOrigin{.file = Converter<std::string>::from(row[1]),
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
