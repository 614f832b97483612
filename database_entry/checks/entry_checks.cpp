#include <database_entry/checks/entry_checks.h>
#include <utilities/vorn_log.h>

namespace {

constexpr double length_tolerance = 1e-7;

// Not "the absolute difference is within": the two differ in the last bit, and for NaN, which passes here.
bool lengths_differ(double expected, double actual) {
  return expected - length_tolerance > actual || actual - length_tolerance > expected;
}

template <class Component>
void check_same_object(const std::string& name, const CrystalStructureDatabaseEntry& entry,
                       THandle<Component> (CrystalStructureDatabaseEntry::*accessor)() const) {
  // Both are held, so that a new object at the second call cannot be where the first one was.
  const THandle<Component> first = (entry.*accessor)();
  const THandle<Component> second = (entry.*accessor)();
  TestSuite::test_equality(name, second, first);
}

}  // namespace

void test_database_entry_summary(std::string test_name, const CrystalStructureDatabaseEntry& entry,
                                 std::string identifier, double a, int number_of_symmetry_operators) {
  if (VORNLog::active(1)) {
    VORNLog::start_debug_line(1) << "test_database_entry_summary test = " << test_name;
    VORNLog::end_debug_line();
  }
  const DatabaseEntryIdentifier expected_identifier(identifier);
  const DatabaseEntryIdentifier actual_identifier = entry.identifier();
  if (expected_identifier != actual_identifier) {
    TestSuite::log_error(test_name + " identifier ", expected_identifier, actual_identifier);
  }
  const THandle<Cell> cell = entry.cell();
  const double actual_a = cell->a();
  if (lengths_differ(a, actual_a)) TestSuite::log_error(test_name + " a ", a, actual_a);

  const int actual_number = static_cast<int>(cell->symmetry_operators()->size());
  if (number_of_symmetry_operators != actual_number) {
    TestSuite::log_error(test_name + " number of symmetry operators ", number_of_symmetry_operators,
                         actual_number);
  }
}

void test_database_entry_handles(const std::string& test_name, const CrystalStructureDatabaseEntry& entry) {
  using Entry = CrystalStructureDatabaseEntry;
  check_same_object(test_name + "::crystal_maker()", entry, &Entry::crystal_maker);
  check_same_object(test_name + "::experimental_info()", entry, &Entry::experimental_info);
  check_same_object(test_name + "::editors_info()", entry, &Entry::editors_info);
  check_same_object(test_name + "::crystal_diagram_match()", entry, &Entry::crystal_diagram_match);
}
