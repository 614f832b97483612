// A backtracking matcher that is as plain as the definition of its language: a b . ^ $ ( ) | * + ? {2} and
// lazy repeats. It takes time without bound, so it serves small patterns and texts only.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

class ReferenceMatcher {
 public:
  // Throws std::invalid_argument for what is not in the language.
  explicit ReferenceMatcher(std::string pattern) : pattern_(std::move(pattern)) {
    whole_ = alternatives();
    if (at_ != pattern_.size()) throw std::invalid_argument(pattern_);
  }

  // In the form of shown().
  std::string found(const std::string& text) {
    text_ = &text;
    for (std::size_t start = 0; start <= text.size(); ++start) {
      captures_.assign(groups_, std::nullopt);
      std::string line;
      const auto done = [&](std::size_t end) {
        line = std::to_string(start) + "-" + std::to_string(end);
        for (const auto& capture : captures_) {
          line +=
              capture ? " " + std::to_string(capture->first) + "-" + std::to_string(capture->second) : " x";
        }
        return true;
      };
      if (whole_(start, done)) return line;
    }
    return "none";
  }

 private:
  using Next = std::function<bool(std::size_t)>;
  // Tries every way to match from a position on, the preferred one first, until what follows is content.
  using Matcher = std::function<bool(std::size_t, const Next&)>;

  bool next_is(char byte) const { return at_ < pattern_.size() && pattern_[at_] == byte; }
  bool take(char byte) { return next_is(byte) && ++at_ > 0; }

  Matcher alternatives() {
    Matcher first = sequence();
    if (!take('|')) return first;
    Matcher second = alternatives();
    return [=](std::size_t at, const Next& next) { return first(at, next) || second(at, next); };
  }

  Matcher sequence() {
    if (at_ == pattern_.size() || next_is('|') || next_is(')')) {
      return [](std::size_t at, const Next& next) { return next(at); };
    }
    Matcher first = item();
    Matcher rest = sequence();
    return [=](std::size_t at, const Next& next) {
      return first(at, [&](std::size_t end) { return rest(end, next); });
    };
  }

  Matcher item() {
    if (take('^')) return [](std::size_t at, const Next& next) { return at == 0 && next(at); };
    if (take('$'))
      return [this](std::size_t at, const Next& next) { return at == text_->size() && next(at); };
    return repeated(atom());
  }

  Matcher atom() {
    if (take('(')) {
      const std::size_t group = groups_++;
      Matcher content = alternatives();
      if (!take(')')) throw std::invalid_argument(pattern_);
      return [=, this](std::size_t at, const Next& next) {
        return content(at, [&](std::size_t end) {
          const auto before = std::exchange(captures_[group], std::pair(at, end));
          if (next(end)) return true;
          captures_[group] = before;
          return false;
        });
      };
    }
    if (!next_is('a') && !next_is('b') && !next_is('.')) throw std::invalid_argument(pattern_);
    const char byte = pattern_[at_++];
    return [=, this](std::size_t at, const Next& next) {
      return at < text_->size() && (byte == '.' || (*text_)[at] == byte) && next(at + 1);
    };
  }

  Matcher repeated(const Matcher& body) {
    if (pattern_.compare(at_, 3, "{2}") == 0) {
      at_ += 3;
      take('?');
      return [=](std::size_t at, const Next& next) {
        return body(at, [&](std::size_t end) { return body(end, next); });
      };
    }
    if (take('?')) {
      const bool lazy = take('?');
      return [=](std::size_t at, const Next& next) {
        return lazy ? next(at) || body(at, next) : body(at, next) || next(at);
      };
    }
    const bool star = take('*');
    if (!star && !take('+')) return body;
    const bool lazy = take('?');
    // Shared, because an iteration has to name the next one. An iteration that took nothing is the last.
    auto once = std::make_shared<Matcher>();
    const auto more = [=, again = once.get()](std::size_t at, const Next& next) {
      return lazy ? next(at) || (*again)(at, next) : (*again)(at, next) || next(at);
    };
    *once = [=](std::size_t at, const Next& next) {
      return body(at, [&](std::size_t end) { return end == at ? next(end) : more(end, next); });
    };
    return [=](std::size_t at, const Next& next) { return star ? more(at, next) : (*once)(at, next); };
  }

  std::string pattern_;
  std::size_t at_ = 0;
  std::size_t groups_ = 0;
  Matcher whole_;
  const std::string* text_ = nullptr;
  std::vector<std::optional<std::pair<std::size_t, std::size_t>>> captures_;
};
