// A pattern that is not a regular expression of this library: where it goes wrong, and why.
//
//   try {
//     Regex("[A-Z");
//   } catch (const RegexError& error) {
//     error.offset();  // 0
//     error.what();    // "Bad regular expression at offset 0: the class has no closing ]"
//   }
#pragma once

#include <regex/export.h>

#include <stdexcept>
#include <string>

class REGEX_EXPORT RegexError : public std::invalid_argument {
 public:
  RegexError(unsigned int offset, const std::string& reason);
  RegexError(const RegexError&) = default;
  RegexError& operator=(const RegexError&) = default;
  ~RegexError() override;

  // In bytes from the start of the pattern, to the first byte of what is wrong.
  unsigned int offset() const noexcept { return offset_; }

 private:
  unsigned int offset_;
};
