// A number in a message: the shortest decimal that reads back.
// Internal: callers want the messages.
#pragma once

#include <charconv>
#include <string>

inline std::string number_text(double value) {
  char text[32];  // no shortest form needs more than 24
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}
