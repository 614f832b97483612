#include <regex>

#include "expressions/engines.h"

namespace {

class StandardMatcher : public Matcher {
 public:
  explicit StandardMatcher(const Pattern& pattern)
      : regex_(pattern.bare, std::regex::ECMAScript | std::regex::optimize) {}

  std::size_t walk(const std::string& text) override {
    std::size_t sum = 0;
    auto position = text.cbegin();
    while (position != text.cend() &&
           std::regex_search(position, text.cend(), match_, regex_, flags(text, position))) {
      for (const auto& group : match_) {
        if (group.matched) {
          fold(sum, static_cast<std::size_t>(group.first - text.cbegin()),
               static_cast<std::size_t>(group.second - text.cbegin()));
        } else {
          fold(sum, none, none);
        }
      }
      position = match_[0].second;
    }
    return sum;
  }

 private:
  // `^` is the start of the text, not of the search.
  static std::regex_constants::match_flag_type flags(const std::string& text,
                                                     std::string::const_iterator position) {
    return position == text.cbegin() ? std::regex_constants::match_default
                                     : std::regex_constants::match_prev_avail;
  }

  std::regex regex_;
  std::smatch match_;
};

}  // namespace

Engine standard_engine() {
  return {"std::regex", [](const Pattern& pattern) { return std::make_unique<StandardMatcher>(pattern); }};
}
