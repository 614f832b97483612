#include "expressions/engines.h"

std::vector<Engine> engines() {
  std::vector<Engine> all = {own_engine()};
#ifdef WITH_RE2
  all.push_back(re2_engine());
#endif
#ifdef WITH_PCRE2
  all.push_back(pcre2_compiled_engine());
  all.push_back(pcre2_interpreted_engine());
#endif
  all.push_back(standard_engine());
  return all;
}
