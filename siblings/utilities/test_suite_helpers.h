// How a failed check becomes a message.
//
//   run1 identifier
//   ABCDEF << should be
//   GHIJKL << was
#pragma once

#include <utilities/database_entry_identifier.h>
#include <utilities/export.h>
#include <utilities/t_handle.h>

#include <concepts>
#include <sstream>
#include <string>

class UTILITIES_EXPORT TestSuiteHelpers {
 public:
  // Records one failure with its complete message; TestSuite::failures() gives them back.
  static void log_error(const std::string& message);

  // Builds the message of a failed check from its name and the two values, and records it.
  template <class T1, class T2>
  static void log_error(const std::string& name, const T1& expected, const T2& actual) {
    std::ostringstream message;
    message << name << '\n';
    output_value(message, expected);
    message << " << should be\n";
    output_value(message, actual);
    message << " << was\n";
    log_error(message.str());
  }

  // An identifier prints itself, any other value is written with <<.
  template <class T>
  static void output_value(std::ostream& os, const T& value) {
    if constexpr (std::same_as<T, DatabaseEntryIdentifier>) {
      value.print(os);
    } else {
      os << value;
    }
  }

  // The address of the object, not its contents.
  template <class T>
  static void output_value(std::ostream& os, const THandle<T>& handle) {
    os << static_cast<const void*>(handle.get());
  }
};
