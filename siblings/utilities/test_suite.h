// Records which checks were made and which of them failed.
//
//   TestSuite::test_equality("run1::crystal_maker()", expected, actual);
//   for (const std::string& message : TestSuite::failures()) std::cerr << message;
//
// A difference is recorded, never thrown. Threads: one at a time.
#pragma once

#include <utilities/export.h>
#include <utilities/test_suite_helpers.h>

#include <string>
#include <vector>

class UTILITIES_EXPORT TestSuite {
 public:
  // Records that a check of this name was made.
  static void log_execution(const std::string& name);

  // Records the check, and a failure when the two values differ.
  template <class T>
  static void test_equality(const std::string& name, const T& expected, const T& actual) {
    log_execution(name);
    if (expected != actual) log_error(name, expected, actual);
  }

  // Records a failure.
  template <class T>
  static void log_error(const std::string& name, const T& expected, const T& actual) {
    TestSuiteHelpers::log_error<T, T>(name, expected, actual);
  }

  // The names of the checks made and the messages of those that failed, in order, since the start or reset().
  [[nodiscard]] static const std::vector<std::string>& executions();
  [[nodiscard]] static const std::vector<std::string>& failures();

  static void reset();
};
