// A day of the proleptic Gregorian calendar, or no date; from an archive any three numbers.
//
//   Date accession(2003, 5, 17);
//   accession.print(std::cout);    // 2003-05-17
//
// Bytes: three ints: year, month, day; 0, 0, 0 for no date.
#pragma once

#include <utilities/archive.h>
#include <utilities/export.h>
#include <utilities/fields.h>

#include <compare>
#include <iosfwd>
#include <tuple>

class UTILITIES_EXPORT Date {
 public:
  // No date: 0, 0, 0. It sorts before every day of the years from 0 on.
  Date() = default;

  // Throws std::invalid_argument unless there is such a day in the years -32767 to 32767.
  Date(int year, int month, int day);

  [[nodiscard]] int year() const { return year_; }
  [[nodiscard]] int month() const { return month_; }
  [[nodiscard]] int day() const { return day_; }

  void write(Archive& archive) const;
  // Takes any three numbers, unchecked: there are archives with dates known to the month (2003, 5, 0). Throws
  // ArchiveError where the stream ends; the old date stays.
  void read(Archive& archive);
  // Four digits of the year at least, two of the month, two of the day: "2003-05-17", "0000-00-00".
  void print(std::ostream& os) const;

  friend bool operator==(const Date&, const Date&) = default;
  friend std::strong_ordering operator<=>(const Date&, const Date&) = default;

  // In archive order.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"year", &Date::year_}, ReadOnlyField{"month", &Date::month_},
                      ReadOnlyField{"day", &Date::day_}};
  }

 private:
  int year_ = 0;
  int month_ = 0;
  int day_ = 0;
};
