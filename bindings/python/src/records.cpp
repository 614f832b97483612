// Publication, chemical, crystal and editors' information, published geometry.
#include <database_entry/records/chemical_info.h>
#include <database_entry/records/crystal_info.h>
#include <database_entry/records/editors_info.h>
#include <database_entry/records/publication.h>
#include <database_entry/records/published_geometry.h>
#include <mathematics/uncertain_value.h>
#include <utilities/date.h>

#include "list.h"

// A class of its number or its text, a journal of its number, wherever one is wanted.
template <>
struct Converter<ChemicalClassification> : ClassConverter<ChemicalClassification> {
  static ChemicalClassification from(py::handle object) {
    if (PyUnicode_Check(object.ptr()) || PyLong_Check(object.ptr()))
      return ChemicalClassification(enumeration_value<ChemicalClassification::Classifier>(object));
    return ClassConverter::from(object);
  }
};
template <>
struct Converter<Journal> : ClassConverter<Journal> {
  static Journal from(py::handle object) {
    return PyLong_Check(object.ptr()) ? Journal(Converter<int>::from(object)) : ClassConverter::from(object);
  }
};
// A day of the standard library's, or "2003-05-17".
template <>
struct Converter<Date> : ClassConverter<Date> {
  static Date from(py::handle object) {
    py::detail::make_caster<Date> caster;
    if (!object.is_none() && caster.load(object, false)) return py::detail::cast_op<Date&>(caster);
    return ClassConverter::from(
        py::module_::import("database_entry.values").attr("date_from")(object, py::type::of<Date>()));
  }
};

namespace {

void bind_date(py::module_& module) {
  auto date = bind_fields<Date>(module, "Date");
  date.def(py::init([] { return THandle<Date>::make(); }));
  date.def(py::init([](int year, int month, int day) { return THandle<Date>(new Date(year, month, day)); }),
           py::arg("year"), py::arg("month"), py::arg("day"));
  date.def_static("_from_fields", [](const py::tuple& fields) {
    return made_of_fields<Date>(fields, THandle<Date>::make());
  });
  date.def("__lt__", [](const Date& a, const Date& b) { return a < b; });
  date.def("__le__", [](const Date& a, const Date& b) { return a <= b; });
  date.def("__gt__", [](const Date& a, const Date& b) { return a > b; });
  date.def("__ge__", [](const Date& a, const Date& b) { return a >= b; });
}

void bind_uncertain_value(py::module_& module) {
  auto value = bind_fields<UncertainValue>(module, "UncertainValue");
  value.def(py::init([](double number, double standard_uncertainty) {
              return THandle<UncertainValue>(new UncertainValue(number, standard_uncertainty));
            }),
            py::arg("value"), py::arg("standard_uncertainty") = 0.0);
  py::implicitly_convertible<py::float_, UncertainValue>();
  py::implicitly_convertible<py::int_, UncertainValue>();
}

void bind_journal(py::module_& module) {
  auto journal = bind_fields<Journal>(module, "Journal");
  journal.def(py::init([](int coden) { return THandle<Journal>(new Journal(coden)); }), py::arg("coden"),
              "The journal of that number in the list; from 1.");
  journal.def_static("_from_fields", [](const py::tuple& fields) {
    return made_of_fields<Journal>(fields, THandle<Journal>(new Journal(1)));
  });
  bind_enumeration<Journal::State>(journal);
  journal.def_property_readonly(
      "state",
      [](const Journal& self) { return enumeration_object(static_cast<Journal::State>(self.state())); },
      "Journal.State: whether the journal is published today.");
  journal.def_static("max_vorn_coden", &Journal::max_vorn_coden, "The number of journals in the list.");
}

void bind_classification(py::module_& module) {
  using Classification = ChemicalClassification;
  auto bound = bind_fields<Classification>(module, "ChemicalClassification");
  auto members = enumeration_members<Classification::Classifier>();
  for (EnumerationMember& member : members)
    member.text = Classification(static_cast<Classification::Classifier>(member.value)).str();
  bind_enumeration<Classification::Classifier>(bound, members);
  bound.def(py::init([](py::handle classifier) {
              return THandle<Classification>(
                  new Classification(enumeration_value<Classification::Classifier>(classifier)));
            }),
            py::arg("classifier") = 0, "Of a Classifier, its text, or any number; nothing is checked.");
  bound.def("str", &Classification::str, "The text of the class.");
}

}  // namespace

void bind_records(py::module_& module) {
  bind_date(module);
  bind_uncertain_value(module);
  bind_journal(module);
  bind_record<Publication>(module, "Publication")
      .def(
          "authors_comma_delimited",
          [](const Publication& self) { return Converter<std::string>::to(self.authors_comma_delimited()); },
          "The authors in one text, joined by ', '.");

  bind_classification(module);
  bind_list<ChemicalClassification>(module, "ChemicalClassifications");
  bind_record<ChemicalInfo>(module, "ChemicalInfo");
  bind_record<CrystalInfo>(module, "CrystalInfo");

  auto editors = bind_record<EditorsInfo>(module, "EditorsInfo");
  bind_enumeration<EditorsInfo::EntryCategory>(editors);
  bind_enumeration<EditorsInfo::AserMatchFlag>(editors);
  bind_enumeration<EditorsInfo::AuthorCorrespondence>(editors);
  bind_enumeration<EditorsInfo::IgnoredErrors>(editors);

  auto bond = bind_fields<PublishedBond>(module, "PublishedBond");
  bond.def(py::init([](const THandle<Atom>& first_atom, const THandle<Atom>& second_atom, py::handle length,
                       bool first_flag, bool second_flag) {
             return THandle<PublishedBond>(new PublishedBond(
                 first_atom, second_atom, Converter<UncertainValue>::from(length), first_flag, second_flag));
           }),
           py::arg("first_atom"), py::arg("second_atom"), py::arg("length"), py::arg("first_flag") = false,
           py::arg("second_flag") = false);
  bind_list<THandle<PublishedBond>>(module, "PublishedBonds");
  bind_record<PublishedGeometry, Equality::by_identity>(module, "PublishedGeometry");
}
