// Streams as callers set them up, and what a function does to one.
//
//   for (const Format& format : formats()) {
//     NotedStream os(format);
//     value.print(os);
//     EXPECT_EQ(os.text(), expected);
//   }
#pragma once

#include <functional>
#include <ios>
#include <locale>
#include <ostream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

// Digits in groups of three, and a comma before the fraction: 1234.5 is "1.234,5".
struct GroupedDigits : std::numpunct<char> {
  char do_thousands_sep() const override { return '.'; }
  char do_decimal_point() const override { return ','; }
  std::string do_grouping() const override { return "\3"; }
  std::string do_truename() const override { return "ja"; }
  std::string do_falsename() const override { return "nein"; }
};

inline std::locale grouping_locale() {
  return {std::locale::classic(), new GroupedDigits};
}

// What a caller may have done to a stream before he hands it on.
struct Format {
  const char* name;
  std::function<void(std::ostream&)> set;
};

inline const std::vector<Format>& formats() {
  static const std::vector<Format> all = {
      {"as it comes", [](std::ostream&) {}},
      {"hexadecimal", [](std::ostream& os) { os << std::hex << std::showbase << std::uppercase; }},
      {"octal", [](std::ostream& os) { os << std::oct; }},
      {"with signs and words for bools", [](std::ostream& os) { os << std::showpos << std::boolalpha; }},
      {"fixed, two digits", [](std::ostream& os) { os << std::fixed, os.precision(2); }},
      {"scientific, twelve digits", [](std::ostream& os) { os << std::scientific, os.precision(12); }},
      {"with all points shown", [](std::ostream& os) { os << std::showpoint; }},
      {"with digits in groups", [](std::ostream& os) { os.imbue(grouping_locale()), os << std::boolalpha; }},
      {"filled up to a width", [](std::ostream& os) { os.width(40), os.fill('*'), os << std::left; }},
  };
  return all;
}

// All that a stream keeps from one value to the next.
inline auto setup_of(const std::ostream& os) {
  return std::tuple(os.flags(), os.precision(), os.fill(), os.getloc(), os.exceptions(), os.tie(),
                    os.rdstate());
}

// Keeps what is written, and how many bytes there were at each flush.
class NotedStream : public std::ostream {
 public:
  NotedStream() : std::ostream(nullptr) { rdbuf(&buffer_); }
  explicit NotedStream(const Format& format) : NotedStream() { format.set(*this); }

  [[nodiscard]] std::string text() const { return buffer_.str(); }
  [[nodiscard]] const std::vector<std::size_t>& flushes() const { return buffer_.flushes; }

 private:
  struct Buffer : std::stringbuf {
    int sync() override {
      flushes.push_back(str().size());
      return 0;
    }
    std::vector<std::size_t> flushes;
  };
  Buffer buffer_;
};
