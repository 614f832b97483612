#include <utilities/t_handle_common.h>

NullHandleError::NullHandleError() : std::logic_error("Null handle") {}

void THandleCommon::null_handle_error() {
  throw NullHandleError();
}
