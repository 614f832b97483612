// What is thrown when a null handle is dereferenced or archived. The text is "Null handle".
#pragma once

#include <utilities/export.h>

#include <stdexcept>

class UTILITIES_EXPORT NullHandleError : public std::logic_error {
 public:
  NullHandleError();
};
