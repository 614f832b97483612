// many_threads SEARCHES: 8 threads search the same constant expressions, SEARCHES times each, and all find
// what one thread finds.
#include <regex/regex.h>

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "searched_texts.h"

namespace {

constexpr int thread_count = 8;

struct SharedExpression {
  Regex expression;
  std::string text;
};

const SharedExpression shared_expressions[] = {
    {Regex("\\[([A-Za-z]{6}(\\d\\d)?)\\]"), "Racemate of [ABCDEF], [GHIJKL01]"},
    {Regex("VORN\\s(\\d+)"), "deposited as VORN 12 and VORN 345"},
    {Regex("^\\s*([A-Z]{6}[0-9]{0,2})\\s*$"), "  ABCDEF01 "},
    {Regex("(a|ab)(c|bcd)(d*)"), "xx abcd"},
    {Regex("(a*)*b"), "aaaaaaaaaaaa"},
};

std::string found(const SharedExpression& shared) {
  RegexResults results;
  shared.expression.search(shared.text, results, 0);
  std::string all;
  for (unsigned int index = 0; index < results.size(); ++index) all += results.match(index).str() + "|";
  return all;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  const long searches_each = std::atol(arguments[1]);
  std::vector<std::string> expected;
  for (const SharedExpression& shared : shared_expressions) expected.push_back(found(shared));

  std::atomic<long> wrong = 0;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < thread_count; ++thread) {
    threads.emplace_back([&, thread] {
      for (long search = 0; search < searches_each; ++search) {
        const std::size_t index = static_cast<std::size_t>(search + thread) % expected.size();
        if (found(shared_expressions[index]) != expected[index]) ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::cout << thread_count << " threads, " << searches_each << " searches each, " << wrong << " wrong\n";
  return wrong == 0 && searches_each > 0 ? 0 : 1;
}
