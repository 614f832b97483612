#include <utilities/archiving/field_list.h>
#include <utilities/date.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <ostream>

namespace {

bool is_day(int year, int month, int day) {
  if (std::abs(static_cast<long long>(year)) > static_cast<int>(std::chrono::year::max()) || month < 1 ||
      month > 12 || day < 1 || day > 31) {
    return false;
  }
  return std::chrono::year_month_day(std::chrono::year(year),
                                     std::chrono::month(static_cast<unsigned>(month)),
                                     std::chrono::day(static_cast<unsigned>(day)))
      .ok();
}

}  // namespace

Date::Date(int year, int month, int day) : year_(year), month_(month), day_(day) {
  if (!is_day(year, month, day)) {
    throw std::invalid_argument("Invalid Date: year " + std::to_string(year) + ", month " +
                                std::to_string(month) + ", day " + std::to_string(day) +
                                " is no day of the calendar");
  }
}

void Date::write(Archive& archive) const {
  write_all_fields(archive, *this);
}

void Date::read(Archive& archive) {
  std::array<int, 3> read{};
  read_fields(archive, read);
  year_ = read[0];
  month_ = read[1];
  day_ = read[2];
}

void Date::print(std::ostream& os) const {
  char text[64];
  // In more bits, because an archive may hold the one int that has no positive counterpart.
  std::snprintf(text, sizeof text, "%s%04lld-%02d-%02d", year_ < 0 ? "-" : "",
                std::abs(static_cast<long long>(year_)), month_, day_);
  os << text;
}
