// Made-up texts and numbers, the same at every run.
#pragma once

#include <random>
#include <string>

// One text from several.
std::string joined(const auto&... parts) {
  std::string text;
  ((text += parts), ...);
  return text;
}

class RandomText {
 public:
  explicit RandomText(unsigned int seed) : random_(seed) {}

  std::size_t below(std::size_t limit) { return random_() % limit; }
  bool one_in(std::size_t count) { return below(count) == 0; }
  int between(int lowest, int highest) {
    return lowest + static_cast<int>(below(static_cast<std::size_t>(highest - lowest + 1)));
  }
  double real(double lowest, double highest) {
    return lowest + (highest - lowest) * static_cast<double>(random_()) / static_cast<double>(random_.max());
  }

  std::string characters(const std::string& set, std::size_t count) {
    std::string text;
    for (std::size_t index = 0; index < count; ++index) text += set[below(set.size())];
    return text;
  }
  std::string digits(std::size_t count) { return characters("0123456789", count); }
  std::string letters(std::size_t count) { return characters("ABCDEFGHIJKLMNOPQRSTUVWXYZ", count); }
  std::string words(std::size_t count) {
    std::string text;
    for (std::size_t index = 0; index < count; ++index) {
      text += joined(index == 0 ? "" : " ", characters("abcdefghijklmnopqrstuvwxyz", 2 + below(8)));
    }
    return text;
  }

 private:
  std::mt19937 random_;
};
