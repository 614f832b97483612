#include <regex/parser.h>
#include <regex/program.h>
#include <regex/regex.h>
#include <regex/simulation.h>
#include <regex/tagged_automaton.h>

#include <stdexcept>

class Regex::Matcher {
 public:
  explicit Matcher(regex_detail::SyntaxTree tree)
      : program_(regex_detail::compile(std::move(tree))),
        automaton_(regex_detail::TaggedAutomaton::build(program_)) {}

  unsigned int slots() const { return static_cast<unsigned int>(program_.plan.places.size()); }

  bool search(const std::string& text, unsigned int from, unsigned int* slots) const {
    return automaton_ ? automaton_->search(text, from, slots)
                      : regex_detail::simulate(program_, text, from, slots);
  }

 private:
  regex_detail::Program program_;
  std::optional<regex_detail::TaggedAutomaton> automaton_;
};

Regex::Regex(const std::string& pattern, unsigned int options) {
  if ((options & ~extended_syntax) != 0) {
    throw RegexError(0, "options " + std::to_string(options) + " are not supported, only 0 and " +
                            std::to_string(extended_syntax));
  }
  matcher_ = std::make_shared<const Matcher>(regex_detail::parse(pattern, options == extended_syntax));
}

Regex::~Regex() = default;

bool Regex::search_from_position(const std::string& text, unsigned int position, RegexResults& results,
                                 unsigned int /*flags*/) const {
  static_assert(RegexResults::no_offset == regex_detail::unset);
  // uncovered: a test would need that much memory
  if (text.size() >= RegexResults::no_offset) {
    throw std::length_error("Regex: a text of 4 GiB or more cannot be searched; search it in pieces");
  }
  results.size_ = 0;
  if (position > text.size()) return false;
  const unsigned int slots = matcher_->slots();
  unsigned int* const offsets = results.offsets_for(slots / 2);
  if (!matcher_->search(text, position, offsets)) return false;
  results.text_.assign(text, offsets[0], offsets[1] - offsets[0]);
  results.size_ = slots / 2;
  return true;
}

bool Regex::search(const std::string& text, RegexResults& results, unsigned int flags) const {
  return search_from_position(text, 0, results, flags);
}

bool Regex::search(const std::string& pattern, const std::string& text, RegexResults& results,
                   unsigned int flags) {
  return Regex(pattern).search(text, results, flags);
}
