// Cuts the ends of a text.
#pragma once

#include <utilities/export.h>

#include <string>
#include <string_view>

// `text` without the leading and trailing characters that occur in `characters`; the inside stays.
[[nodiscard]] UTILITIES_EXPORT std::string trim(const std::string& text, std::string characters);

// The same without a copy: a part of `text`.
[[nodiscard]] UTILITIES_EXPORT std::string_view trim_view(std::string_view text, std::string_view characters);
