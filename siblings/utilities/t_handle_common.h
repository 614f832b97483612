// What all handles share, whatever they point to.
#pragma once

#include <utilities/export.h>
#include <utilities/null_handle_error.h>

// The count that the handles of one object share, on the free store. Begins with the plain int.
struct HandleCount {
  int handles = 1;
  bool in_block = false;  // with the object behind it, made and deleted together
};

class UTILITIES_EXPORT THandleCommon {
 public:
  // Throws NullHandleError.
  [[noreturn]] static void null_handle_error();
};
