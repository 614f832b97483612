// One regular-expression engine, as the benchmark drives them all.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

// A pattern as this library writes it, and the same for engines that take no comments.
struct Pattern {
  std::string name;
  std::string text;
  unsigned int options;  // of Regex
  std::string bare;      // the text without blanks and comments
};

// One compiled pattern of one engine.
class Matcher {
 public:
  virtual ~Matcher() = default;
  // Walks all matches of the text, each from the end of the one before, with all captures. Gives a number
  // made from the offsets of every match and capture, by which engines can be checked against each other.
  virtual std::size_t walk(const std::string& text) = 0;
};

struct Engine {
  std::string name;
  std::function<std::unique_ptr<Matcher>(const Pattern&)> compile;
};

// Folds the next begin and end of a capture into the number of a walk; a group that took no part is (none,
// none).
inline constexpr std::size_t none = ~std::size_t{0};
inline void fold(std::size_t& sum, std::size_t begin, std::size_t end) {
  sum = sum * 31 + begin;
  sum = sum * 31 + end;
}

// The engine of this library first, then those that were found when the benchmark was built.
std::vector<Engine> engines();
