#include "exchange/cif/dates.h"

#include <array>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "exchange/cif/letters.h"

namespace {

// A number or a word of a date; what separates it from the next one.
struct Part {
  std::string text;  // in lower case
  char separator = '\0';

  [[nodiscard]] bool is_number() const { return is_digit(text[0]); }
  [[nodiscard]] int number() const { return std::stoi(text); }
};

// As far as numbers of at most eight digits and words go.
std::vector<Part> parts_of(const std::string& text) {
  std::vector<Part> parts;
  std::size_t place = 0;
  while (place < text.size() && parts.size() < 8) {
    const bool number = is_digit(text[place]);
    if (!number && !is_letter(text[place])) break;
    std::size_t end = place;
    while (end < text.size() && (number ? is_digit(text[end]) : is_letter(text[end]))) ++end;
    if (number && end - place > 8) break;
    Part part{lower_case(text.substr(place, end - place)), '\0'};
    place = end;
    while (place < text.size() && std::string_view(" -/.,:").find(text[place]) != std::string_view::npos) {
      if (part.separator == '\0' || part.separator == ' ') part.separator = text[place];
      ++place;
    }
    parts.push_back(part);
  }
  return parts;
}

// 1 to 12 for the name of a month or its first three letters, else 0.
int month_of(const std::string& word) {
  constexpr std::array<std::string_view, 12> months = {"january",   "february", "march",    "april",
                                                       "may",       "june",     "july",     "august",
                                                       "september", "october",  "november", "december"};
  if (word.size() < 3) return 0;
  for (std::size_t month = 0; month < months.size(); ++month) {
    if (months[month].substr(0, word.size()) == word) return static_cast<int>(month + 1);
  }
  return word == "sept" ? 9 : 0;
}

std::optional<Date> date(int year, int month, int day) {
  try {
    return Date(year, month, day);
  } catch (const std::invalid_argument&) {
    return std::nullopt;
  }
}

bool is_year(const Part& part) {
  return part.is_number() && part.text.size() == 4;
}

bool is_day_or_month(const Part& part) {
  return part.is_number() && part.text.size() <= 2;
}

// The dictionary of the first CIFs had years of two digits.
int full_year(int year) {
  return year < 60 ? 2000 + year : 1900 + year;
}

std::optional<Date> of_three(const Part& one, const Part& two, const Part& three) {
  const int month_first = one.is_number() ? 0 : month_of(one.text);
  const int month_second = two.is_number() ? 0 : month_of(two.text);
  if (month_first != 0 && is_day_or_month(two) && is_year(three))
    return date(three.number(), month_first, two.number());
  if (month_second != 0 && is_day_or_month(one) && is_year(three))
    return date(three.number(), month_second, one.number());
  if (month_second != 0 && is_year(one) && is_day_or_month(three))
    return date(one.number(), month_second, three.number());
  if (month_second != 0 && is_day_or_month(one) && is_day_or_month(three) && three.text.size() == 2)
    return date(full_year(three.number()), month_second, one.number());
  if (!two.is_number() || !is_day_or_month(two)) return std::nullopt;
  if (is_year(one) && is_day_or_month(three)) return date(one.number(), two.number(), three.number());
  if (is_day_or_month(one) && is_year(three)) {
    const bool day_first = one.separator == '.' || one.number() > 12 || one.number() == two.number();
    if (day_first) return date(three.number(), two.number(), one.number());
    if (two.number() > 12) return date(three.number(), one.number(), two.number());
    return std::nullopt;
  }
  if (one.text.size() == 2 && two.text.size() == 2 && three.text.size() == 2 && one.separator == '-')
    return date(full_year(one.number()), two.number(), three.number());
  return std::nullopt;
}

bool is_day_of_the_week(const Part& part) {
  constexpr std::array<std::string_view, 7> days = {"mon", "tue", "wed", "thu", "fri", "sat", "sun"};
  for (const std::string_view day : days) {
    if (part.text.substr(0, 3) == day) return true;
  }
  return false;
}

}  // namespace

std::optional<Date> day_of(const std::string& text) {
  std::vector<Part> parts = parts_of(text);
  if (!parts.empty() && is_day_of_the_week(parts[0])) parts.erase(parts.begin());
  if (parts.empty()) return std::nullopt;
  if (parts[0].is_number() && parts[0].text.size() == 8) {
    const std::string& digits = parts[0].text;
    return date(std::stoi(digits.substr(0, 4)), std::stoi(digits.substr(4, 2)), std::stoi(digits.substr(6)));
  }
  // "May 11 13:12:09 2005", with or without a time zone of letters before the year.
  if (parts.size() >= 6 && parts[2].separator == ':' && parts[3].separator == ':') {
    const Part& year = parts[5].is_number() || parts.size() == 6 ? parts[5] : parts[6];
    return of_three(parts[0], parts[1], year);
  }
  return parts.size() < 3 ? std::nullopt : of_three(parts[0], parts[1], parts[2]);
}

std::optional<Date> latest_day_of(const std::string& text) {
  std::optional<Date> latest;
  for (std::size_t place = 0; place < text.size(); ++place) {
    const bool begins_word = place == 0 || text[place - 1] == ' ';
    if (!begins_word || !is_digit(text[place])) continue;
    const auto day = day_of(text.substr(place, 40));
    if (day && (!latest || *latest < *day)) latest = day;
  }
  return latest;
}
