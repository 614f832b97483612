#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>

#include <stdexcept>

#include "expressions/engines.h"

namespace {

class Pcre2Matcher : public Matcher {
 public:
  Pcre2Matcher(const Pattern& pattern, bool compiled) : compiled_(compiled) {
    int error = 0;
    PCRE2_SIZE offset = 0;
    code_ = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.bare.data()), pattern.bare.size(),
                          PCRE2_DOLLAR_ENDONLY, &error, &offset, nullptr);
    if (code_ == nullptr) throw std::runtime_error("PCRE2 does not take the pattern " + pattern.bare);
    if (compiled && pcre2_jit_compile(code_, PCRE2_JIT_COMPLETE) != 0) {
      pcre2_code_free(code_);
      throw std::runtime_error("PCRE2 cannot compile the pattern " + pattern.bare);
    }
    data_ = pcre2_match_data_create_from_pattern(code_, nullptr);
  }
  Pcre2Matcher(const Pcre2Matcher&) = delete;
  Pcre2Matcher& operator=(const Pcre2Matcher&) = delete;
  ~Pcre2Matcher() override {
    pcre2_match_data_free(data_);
    pcre2_code_free(code_);
  }

  std::size_t walk(const std::string& text) override {
    const auto* subject = reinterpret_cast<PCRE2_SPTR>(text.data());
    const PCRE2_SIZE* offsets = pcre2_get_ovector_pointer(data_);
    const std::uint32_t groups = pcre2_get_ovector_count(data_);
    std::size_t sum = 0;
    std::size_t position = 0;
    while (position < text.size()) {
      // The fast path of the compiled matcher, without the checks of its arguments.
      const int found =
          compiled_ ? pcre2_jit_match(code_, subject, text.size(), position, 0, data_, nullptr)
                    : pcre2_match(code_, subject, text.size(), position, PCRE2_NO_JIT, data_, nullptr);
      if (found < 0) break;
      for (std::uint32_t group = 0; group < groups; ++group) {
        fold(sum, offsets[2 * group], offsets[2 * group + 1]);
      }
      position = offsets[1];
    }
    return sum;
  }

 private:
  static_assert(PCRE2_UNSET == none);
  pcre2_code* code_;
  pcre2_match_data* data_;
  bool compiled_;
};

Engine engine(const std::string& name, bool compiled) {
  return {name,
          [compiled](const Pattern& pattern) { return std::make_unique<Pcre2Matcher>(pattern, compiled); }};
}

}  // namespace

Engine pcre2_compiled_engine() {
  return engine("PCRE2, compiled", true);
}
Engine pcre2_interpreted_engine() {
  return engine("PCRE2, interpreted", false);
}
