#include <regex/regex_error.h>

RegexError::RegexError(unsigned int offset, const std::string& reason)
    : std::invalid_argument("Bad regular expression at offset " + std::to_string(offset) + ": " + reason),
      offset_(offset) {}

RegexError::~RegexError() = default;
