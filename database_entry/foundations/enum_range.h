// Whether an integer names a member of an enumeration whose members run without gaps.
// Internal: callers want the validate operations of the records.
#pragma once

#include <cstdint>
#include <stdexcept>

// One unsigned comparison, which is safe for every int: below `lowest` wraps round to a huge number.
[[nodiscard]] constexpr bool in_enum_range(std::int32_t value, std::int32_t lowest, std::int32_t highest) {
  return static_cast<std::uint32_t>(value) - static_cast<std::uint32_t>(lowest) <=
         static_cast<std::uint32_t>(highest) - static_cast<std::uint32_t>(lowest);
}

// Throws std::invalid_argument with `message` when the value is outside lowest to highest.
constexpr void require_enum_range(std::int32_t value, std::int32_t lowest, std::int32_t highest,
                                  const char* message) {
  if (!in_enum_range(value, lowest, highest)) throw std::invalid_argument(message);
}
