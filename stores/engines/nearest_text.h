// The text among some that is least different from one.
// Internal: for errors.
#pragma once

#include <string>
#include <vector>

// By single bytes that are put in, left out or changed; of equals the first. Empty where there is none.
[[nodiscard]] std::string nearest_text(const std::string& text, const std::vector<std::string>& candidates);
