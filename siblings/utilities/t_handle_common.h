// What all handles share, whatever they point to.
#pragma once

#include <utilities/export.h>
#include <utilities/null_handle_error.h>

class UTILITIES_EXPORT THandleCommon {
 public:
  // Throws NullHandleError.
  [[noreturn]] static void null_handle_error();
};
