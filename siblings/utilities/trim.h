// Cuts the ends of a text.
#pragma once

#include <utilities/export.h>

#include <string>

// `text` without the leading and trailing characters that occur in `characters`; the inside stays.
[[nodiscard]] UTILITIES_EXPORT std::string trim(const std::string& text, std::string characters);
