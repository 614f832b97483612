#include <regex/regex.h>

#include "expressions/engines.h"
#include "report/suite.h"

namespace {

class OwnMatcher : public Matcher {
 public:
  explicit OwnMatcher(const Pattern& pattern) : regex_(pattern.text, pattern.options) {}

  std::size_t walk(const std::string& text) override {
    std::size_t sum = 0;
    unsigned int position = 0;
    while (position < text.size() && regex_.search_from_position(text, position, results_, 0)) {
      for (unsigned int group = 0; group < results_.size(); ++group) {
        const RegexResults::Match match = results_.match(group);
        if (match.matched()) {
          fold(sum, match.begin_offset(), match.end_offset());
        } else {
          fold(sum, none, none);
        }
      }
      position = results_.match(0).end_offset();
    }
    return sum;
  }

 private:
  Regex regex_;
  RegexResults results_;
};

}  // namespace

Engine own_engine() {
  return {Suite::own, [](const Pattern& pattern) { return std::make_unique<OwnMatcher>(pattern); }};
}
