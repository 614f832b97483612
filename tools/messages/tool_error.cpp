#include "tools/messages/tool_error.h"

#include <fmt/format.h>

#include <system_error>

ToolError system_error(const std::string& file, const std::string& action, int error_number) {
  return ToolError(ExitCode::cannot_open, fmt::format("{}: cannot {}: {}", file, action,
                                                      std::generic_category().message(error_number)));
}
