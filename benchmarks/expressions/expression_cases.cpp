#include "expressions/expression_cases.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "expressions/engine.h"
#include "expressions/patterns.h"

namespace {

constexpr std::size_t megabyte = 1'000'000;

using Texts = std::shared_ptr<const std::vector<std::string>>;

std::size_t total_size(const std::vector<std::string>& texts) {
  std::size_t sum = 0;
  for (const std::string& text : texts) sum += text.size();
  return sum;
}

void require_agreement(Matcher& own, Matcher& other, const std::string& engine, const Pattern& pattern,
                       const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    if (own.walk(text) != other.walk(text)) {
      throw std::logic_error(engine + " finds other matches of " + pattern.bare + " in \"" + text + "\"");
    }
  }
}

void add_short_texts(Suite& suite, const Pattern& pattern) {
  const std::string name = "expression " + pattern.name + ", a text of 60 to 200 bytes";
  const auto texts = std::make_shared<const std::vector<std::string>>(texts_for(pattern));
  const std::vector<Engine> all = engines();
  for (const Engine& engine : all) {
    const std::shared_ptr<Matcher> matcher = engine.compile(pattern);
    require_agreement(*all.front().compile(pattern), *matcher, engine.name, pattern, *texts);
    suite.measure(name, engine.name, texts->size(), total_size(*texts), [matcher, texts] {
      for (const std::string& text : *texts) benchmark::DoNotOptimize(matcher->walk(text));
    });
  }
  suite.expect(name, {"RE2", Goal::at_least_times_faster, 2.0});
  suite.expect(name, {"PCRE2, compiled", Goal::at_most_times, 1.25});
}

// The shortest of three walks.
double seconds_of_walk(Matcher& matcher, const std::string& text) {
  using Clock = std::chrono::steady_clock;
  double shortest = std::numeric_limits<double>::max();
  for (int attempt = 0; attempt < 3; ++attempt) {
    const auto start = Clock::now();
    benchmark::DoNotOptimize(matcher.walk(text));
    shortest = std::min(shortest, std::chrono::duration<double>(Clock::now() - start).count());
  }
  return shortest;
}

// The hostile text on which this pattern took longest, of those of `size` bytes.
std::size_t worst_text(const Pattern& pattern, std::size_t size) {
  const std::unique_ptr<Matcher> matcher = engines().front().compile(pattern);
  const std::vector<HostileText> texts = hostile_texts(size);
  std::size_t worst = 0;
  double longest = 0.0;
  for (std::size_t index = 0; index < texts.size(); ++index) {
    const double seconds = seconds_of_walk(*matcher, texts[index].text);
    if (seconds > longest) {
      longest = seconds;
      worst = index;
    }
  }
  return worst;
}

void add_hostile_texts(Suite& suite, const Pattern& pattern) {
  const std::size_t worst = worst_text(pattern, megabyte / 4);
  const std::string name =
      "hostile text for " + pattern.name + ", the slowest: " + hostile_texts(megabyte)[worst].name;
  suite.compare_with(name, "2 MB");
  for (const int size : {1, 2}) {
    const auto text = std::make_shared<const std::string>(
        hostile_texts(static_cast<std::size_t>(size) * megabyte)[worst].text);
    const std::shared_ptr<Matcher> matcher = engines().front().compile(pattern);
    suite.measure(name, std::to_string(size) + " MB", 1, text->size(),
                  [matcher, text] { benchmark::DoNotOptimize(matcher->walk(*text)); });
  }
  suite.expect(name, {"1 MB", Goal::at_most_nanoseconds, 25e6});
  suite.expect(name, {"1 MB", Goal::at_most_times, 2.2});
}

void add_building(Suite& suite) {
  const std::string name = "building the library's expressions, per expression";
  for (const Engine& engine : engines()) {
    suite.measure(name, engine.name, patterns().size(), 0, [engine] {
      for (const Pattern& pattern : patterns()) benchmark::DoNotOptimize(engine.compile(pattern));
    });
  }
  suite.expect(name, {"RE2", Goal::at_least_times_faster, 1.0});
}

}  // namespace

void add_expression_cases(Suite& suite) {
  for (const Pattern& pattern : patterns()) add_short_texts(suite, pattern);
  const std::string sum = "all expressions together, a text each";
  suite.sum(sum, "expression ");
  suite.expect(sum, {"RE2", Goal::at_least_times_faster, 2.0});
  suite.expect(sum, {"PCRE2, compiled", Goal::at_least_times_faster, 1.0});
  for (const Pattern& pattern : patterns()) add_hostile_texts(suite, pattern);
  add_building(suite);
}
