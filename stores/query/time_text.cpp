#include <stores/query/time_text.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <string_view>

namespace {

bool is_digit(char letter) {
  return letter >= '0' && letter <= '9';
}

// A number of so many digits, and the sign after it.
struct Scanner {
  std::string_view rest;
  bool good = true;

  int digits(std::size_t count) {
    int value = 0;
    for (std::size_t index = 0; index < count; ++index) {
      if (rest.empty() || !is_digit(rest.front())) {
        good = false;
        return 0;
      }
      value = value * 10 + (rest.front() - '0');
      rest.remove_prefix(1);
    }
    return value;
  }
  char sign(std::string_view of) {
    if (rest.empty() || of.find(rest.front()) == std::string_view::npos) {
      good = false;
      return '\0';
    }
    const char found = rest.front();
    rest.remove_prefix(1);
    return found;
  }
};

struct Time {
  std::chrono::sys_seconds second;
  bool has_fraction = false;
};

std::optional<Time> time_of(const std::string& text) {
  Scanner scan{text};
  const int year = scan.digits(4);
  scan.sign("-");
  const int month = scan.digits(2);
  scan.sign("-");
  const int day = scan.digits(2);
  scan.sign("Tt ");
  const int hour = scan.digits(2);
  scan.sign(":");
  const int minute = scan.digits(2);
  scan.sign(":");
  const int second = scan.digits(2);
  bool has_fraction = false;
  if (scan.rest.starts_with('.')) {
    scan.rest.remove_prefix(1);
    if (scan.rest.empty() || !is_digit(scan.rest.front())) return std::nullopt;
    while (!scan.rest.empty() && is_digit(scan.rest.front())) {
      has_fraction = has_fraction || scan.rest.front() != '0';
      scan.rest.remove_prefix(1);
    }
  }
  const char zone = scan.sign("Zz+-");
  int offset = 0;
  if (zone == '+' || zone == '-') {
    const int hours = scan.digits(2);
    scan.sign(":");
    const int minutes = scan.digits(2);
    if (hours > 23 || minutes > 59) return std::nullopt;
    offset = (hours * 60 + minutes) * (zone == '+' ? 1 : -1);
  }
  if (!scan.good || !scan.rest.empty() || hour > 23 || minute > 59 || second > 60) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) return std::nullopt;
  return Time{std::chrono::sys_days(date) + std::chrono::hours(hour) + std::chrono::minutes(minute - offset) +
                  std::chrono::seconds(second),
              has_fraction};
}

std::string text_of(std::chrono::sys_seconds time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text.data();
}

}  // namespace

std::optional<ConditionPointer> time_condition(const PropertyName& property, EntryOperator comparison,
                                               const std::string& text) {
  const auto time = time_of(text);
  if (!time || is_fuzzy(comparison)) return std::nullopt;
  const std::string whole = text_of(time->second);
  if (time->has_fraction) {
    // No kept time has a fraction: what is before or at the fraction is before or at the second that it is
    // in.
    const ConditionPointer before = comparison_condition(property, {EntryOperator::at_most, whole});
    const ConditionPointer after = comparison_condition(property, {EntryOperator::greater, whole});
    switch (comparison) {
      case EntryOperator::less:
      case EntryOperator::at_most:
        return before;
      case EntryOperator::greater:
      case EntryOperator::at_least:
        return after;
      case EntryOperator::equal:
        return joined_conditions(Condition::Kind::all, {before, after});
      default:
        return joined_conditions(Condition::Kind::any, {before, after});
    }
  }
  return comparison_condition(property, {comparison, whole});
}
