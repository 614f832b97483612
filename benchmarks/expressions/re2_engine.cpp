#include <re2/re2.h>

#include <array>

#include "expressions/engines.h"

namespace {

class Re2Matcher : public Matcher {
 public:
  explicit Re2Matcher(const Pattern& pattern)
      : regex_(pattern.bare, options()), groups_(1 + regex_.NumberOfCapturingGroups()) {}

  std::size_t walk(const std::string& text) override {
    std::size_t sum = 0;
    std::size_t position = 0;
    while (position < text.size() &&
           regex_.Match(text, position, text.size(), RE2::UNANCHORED, captures_.data(), groups_)) {
      for (int group = 0; group < groups_; ++group) {
        const re2::StringPiece& capture = captures_[static_cast<std::size_t>(group)];
        if (capture.data() == nullptr) {
          fold(sum, none, none);
        } else {
          const auto begin = static_cast<std::size_t>(capture.data() - text.data());
          fold(sum, begin, begin + capture.size());
        }
      }
      position = static_cast<std::size_t>(captures_[0].data() - text.data()) + captures_[0].size();
    }
    return sum;
  }

 private:
  // Bytes as they come, like all the others.
  static RE2::Options options() { return RE2::Options(RE2::Latin1); }

  RE2 regex_;
  int groups_;
  std::array<re2::StringPiece, 4> captures_;
};

}  // namespace

Engine re2_engine() {
  return {"RE2", [](const Pattern& pattern) { return std::make_unique<Re2Matcher>(pattern); }};
}
