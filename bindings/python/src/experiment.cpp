// Experimental information and the range in it.
#include <database_entry/records/experimental_info.h>

#include "record.h"

void bind_experiment(py::module_& module) {
  using Comparator = DoubleComparator;
  py::class_<Comparator>(module, "DoubleComparator", class_documentation("DoubleComparator"))
      .def(py::init([](double tolerance) { return Comparator{.tolerance = tolerance}; }),
           py::arg("tolerance") = Comparator().tolerance)
      .def_readonly("tolerance", &Comparator::tolerance)
      .def("equal", &Comparator::equal, py::arg("a"), py::arg("b"))
      .def("__call__", &Comparator::operator(), py::arg("a"), py::arg("b"));

  using Sigma = Range<double, Comparator>;
  bind_enumeration<RangeLimit::LimitCondition>(
      py::class_<RangeLimit>(module, "RangeLimit", class_documentation("RangeLimit")));
  auto range = bind_fields<Sigma>(module, "Range");
  range.def(py::init([](double lower, py::handle lower_condition, double upper, py::handle upper_condition,
                        const Comparator& comparator) {
              return THandle<Sigma>(
                  new Sigma(lower, enumeration_value<RangeLimit::LimitCondition>(lower_condition), upper,
                            enumeration_value<RangeLimit::LimitCondition>(upper_condition), comparator));
            }),
            py::arg("lower") = 0.0, py::arg("lower_condition") = 0, py::arg("upper") = 0.0,
            py::arg("upper_condition") = 0, py::arg("comparator") = Comparator());
  range.def_property_readonly("comparator", [](const Sigma& self) { return self.comparator(); });

  auto experiment = bind_record<ExperimentalInfo>(module, "ExperimentalInfo");
  bind_enumeration<ExperimentalInfo::RadiationProbe>(experiment);
  bind_enumeration<ExperimentalInfo::PowderStudy>(experiment);
  bind_enumeration<ExperimentalInfo::IntensityMethod>(experiment);
}
