#include <utilities/test_suite.h>

namespace {

struct Records {
  std::vector<std::string> executions;
  std::vector<std::string> failures;
};

// Made at first use, so that checks may run before main.
Records& records() {
  static Records all;
  return all;
}

}  // namespace

void TestSuite::log_execution(const std::string& name) {
  records().executions.push_back(name);
}

const std::vector<std::string>& TestSuite::executions() {
  return records().executions;
}

const std::vector<std::string>& TestSuite::failures() {
  return records().failures;
}

void TestSuite::reset() {
  records() = {};
}

void TestSuiteHelpers::log_error(const std::string& message) {
  records().failures.push_back(message);
}
