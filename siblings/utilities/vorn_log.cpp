#include <utilities/vorn_log.h>

#include <iostream>

namespace {

// Null is standard error. A plain pointer has no destructor, so the log outlives every static object.
std::ostream* log_stream = nullptr;

std::ostream& stream() {
  return log_stream != nullptr ? *log_stream : std::cerr;
}

}  // namespace

int VORNLog::level_ = 0;
int VORNLog::minimum_level_ = 0;

std::ostream& VORNLog::start_debug_line(int) {
  return stream();
}

void VORNLog::end_debug_line() {
  stream() << '\n' << std::flush;
}

void VORNLog::set_stream(std::ostream& stream) {
  log_stream = &stream;
}
