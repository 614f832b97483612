#include <symmetry/crystal_symmetry_operator.h>
#include <utilities/archiving/field_list.h>

#include <charconv>
#include <cmath>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace {

constexpr std::string_view axes = "xyz";

// No translation is as large. What a text may say, xyz() can say in a text that may be read again.
constexpr double most = 1000.0;

// Reads one triplet, character by character, each looked at once.
class TripletReader {
 public:
  explicit TripletReader(const std::string& text) : text_(text) {}

  void read(std::array<int, 9>& rotation, std::array<double, 3>& translation) {
    rotation = {};
    for (std::size_t row = 0; row < 3; ++row) {
      if (row > 0 && !take(',')) fail("a comma is missing");
      read_sum(&rotation[3 * row], translation[row]);
    }
    if (peek() != '\0' || position_ != text_.size()) fail("something follows the third sum");
  }

 private:
  void read_sum(int* row, double& translation) {
    for (bool first = true;; first = false) {
      const bool minus = take('-');
      if (!minus && !take('+') && !first) return;
      read_term(minus ? -1 : 1, row, translation);
    }
  }

  // A number, an axis, or a whole number before an axis.
  void read_term(int sign, int* row, double& translation) {
    int factor = 1;
    if (is_digit(peek()) || peek() == '.') {
      const std::size_t start = position_;
      const double number = read_number();
      if (axis() == axes.npos) {
        translation += sign * number;
        if (!(std::abs(translation) < most)) fail("the translation is not below 1000");
        return;
      }
      if (position_ - start > 2 || number != std::floor(number)) {
        fail("the factor of an axis must be a whole number of at most two digits");
      }
      factor = static_cast<int>(number);
    }
    const std::size_t column = axis();
    if (column == axes.npos) fail("x, y, z or a number is missing");
    if (row[column] != 0) fail("an axis stands twice in one sum");
    ++position_;
    row[column] = sign * factor;
  }

  double read_number() {
    const double numerator = read_decimal();
    if (!take('/')) return numerator;
    const double denominator = read_decimal();
    if (denominator == 0.0) fail("the denominator is zero");
    if (!(numerator / denominator < most)) fail("the number is not below 1000");
    return numerator / denominator;
  }

  double read_decimal() {
    skip_blanks();
    std::size_t end = position_;
    const auto skip_digits = [&] {
      const std::size_t first = end;
      while (end < text_.size() && is_digit(text_[end])) ++end;
      return end - first;
    };
    const std::size_t before_point = skip_digits();
    std::size_t after_point = 0;
    if (end < text_.size() && text_[end] == '.') {
      ++end;
      after_point = skip_digits();
    }
    const std::string_view number = std::string_view(text_).substr(position_, end - position_);
    const double value = before_point + after_point == 0 ? most : decimal_value(number, after_point);
    const bool is_too_small = value == 0.0 && number.find_first_not_of("0.") != number.npos;
    if (!(value < most) || is_too_small) fail("a number below 1000 is missing");
    position_ = end;
    return value;
  }

  // The double nearest to a number of digits, `decimals` of them after its point.
  static double decimal_value(std::string_view number, std::size_t decimals) {
    constexpr std::size_t exact_digits = 15;
    if (number.size() <= exact_digits) {  // both are exact as doubles, so that their quotient is the nearest
      double digits = 0.0;
      for (const char character : number)
        if (character != '.') digits = 10.0 * digits + (character - '0');
      double power = 1.0;
      for (std::size_t decimal = 0; decimal < decimals; ++decimal) power *= 10.0;
      return digits / power;
    }
    double value = 0.0;
#ifdef __cpp_lib_to_chars
    std::from_chars(number.data(), number.data() + number.size(), value, std::chars_format::fixed);
#else  // a standard library without from_chars for doubles
    std::istringstream stream{std::string(number)};
    stream.imbue(std::locale::classic());
    stream >> value;
#endif
    return value;
  }

  std::size_t axis() {
    const char character = peek();
    return character == '\0' ? axes.npos : axes.find(static_cast<char>(character | 0x20));
  }

  char peek() {
    skip_blanks();
    return position_ < text_.size() ? text_[position_] : '\0';
  }

  bool take(char wanted) {
    if (peek() != wanted) return false;
    ++position_;
    return true;
  }

  void skip_blanks() {
    while (position_ < text_.size() && (text_[position_] == ' ' || text_[position_] == '\t')) ++position_;
  }

  static bool is_digit(char character) {
    return character >= '0' && character <= '9';
  }

  [[noreturn]] void fail(const char* reason) const {
    constexpr std::size_t shown = 60;
    const std::string text = text_.size() <= shown ? text_ : text_.substr(0, shown) + "...";
    throw std::invalid_argument("Invalid CrystalSymmetryOperator \"" + text + "\" at offset " +
                                std::to_string(position_) + ": " + reason);
  }

  const std::string& text_;
  std::size_t position_ = 0;
};

// Reads what nearly all triplets are made of: axes, signs, blanks, and numbers of one digit or a fraction of
// such by one of two. Gives false for every other text, which TripletReader then looks at as a whole.
bool read_plain_triplet(const std::string& text, std::array<int, 9>& rotation,
                        std::array<double, 3>& translation) {
  rotation = {};
  std::size_t row = 0;
  bool has_term = false;
  int sign = 0;  // of the term that comes; 0 before a sign is seen
  const auto digit_at = [&](std::size_t place) {
    const int digit = place < text.size() ? text[place] - '0' : -1;
    return digit <= 9 ? digit : -1;
  };
  for (std::size_t place = 0; place < text.size(); ++place) {
    const char character = text[place];
    if (character == ' ') continue;
    if (character == ',') {
      if (!has_term || sign != 0 || ++row == 3) return false;
      has_term = false;
    } else if (character == '+' || character == '-') {
      if (sign != 0) return false;
      sign = character == '-' ? -1 : 1;
    } else {
      if (has_term && sign == 0) return false;
      const int factor = sign == 0 ? 1 : sign;
      if (const std::size_t axis = axes.find(character); axis != axes.npos) {
        if (rotation[3 * row + axis] != 0) return false;
        rotation[3 * row + axis] = factor;
      } else {
        double number = digit_at(place);
        if (number < 0) return false;
        if (place + 1 < text.size() && text[place + 1] == '/') {
          place += 2;
          int denominator = digit_at(place);
          if (denominator > 0 && digit_at(place + 1) >= 0) denominator = 10 * denominator + digit_at(++place);
          if (denominator <= 0) return false;
          number /= denominator;
        }
        const char next = place + 1 < text.size() ? text[place + 1] : ',';
        if (next != ',' && next != '+' && next != '-') return false;
        translation[row] += factor * number;
        if (!(std::abs(translation[row]) < most)) return false;
      }
      sign = 0;
      has_term = true;
    }
  }
  return row == 2 && has_term && sign == 0;
}

// The translation without its sign: a fraction where one gives the same double, else the shortest decimal.
std::string magnitude_text(double value) {
  for (const int denominator : {1, 2, 3, 4, 6, 8, 12, 24}) {
    const double numerator = value * denominator;
    const int whole = numerator < 1000.0 ? static_cast<int>(std::lround(numerator)) : 0;
    if (whole > 0 && static_cast<double>(whole) / denominator == value) {
      std::string fraction = std::to_string(whole);
      if (denominator != 1) fraction.append("/").append(std::to_string(denominator));
      return fraction;
    }
  }
  char decimal[400];  // no double needs more
  return {decimal, std::to_chars(decimal, decimal + sizeof decimal, value, std::chars_format::fixed).ptr};
}

void append_axis(std::string& sum, int factor, char axis) {
  if (factor == 0) return;
  const long long magnitude = factor < 0 ? -static_cast<long long>(factor) : factor;
  if (factor < 0) {
    sum += '-';
  } else if (!sum.empty()) {
    sum += '+';
  }
  if (magnitude != 1) sum += std::to_string(magnitude);
  sum += axis;
}

}  // namespace

CrystalSymmetryOperator::CrystalSymmetryOperator(const std::string& xyz) {
  if (read_plain_triplet(xyz, rotation_, translation_)) return;
  translation_ = {};
  TripletReader(xyz).read(rotation_, translation_);
}

std::string CrystalSymmetryOperator::xyz() const {
  std::string triplet;
  for (std::size_t row = 0; row < 3; ++row) {
    std::string sum;
    const double translation = translation_[row];
    if (translation < 0.0) sum += '-';
    if (translation != 0.0) sum += magnitude_text(std::abs(translation));
    for (std::size_t column = 0; column < 3; ++column)
      append_axis(sum, rotation_[3 * row + column], axes[column]);
    if (row > 0) triplet += ',';
    triplet += sum.empty() ? "0" : sum;
  }
  return triplet;
}

FractionalCoordinates CrystalSymmetryOperator::apply(const FractionalCoordinates& point) const {
  const auto coordinate = [&](std::size_t row) {
    return rotation_[3 * row] * point.x + rotation_[3 * row + 1] * point.y +
           rotation_[3 * row + 2] * point.z + translation_[row];
  };
  return {coordinate(0), coordinate(1), coordinate(2)};
}

void CrystalSymmetryOperator::write(Archive& archive) const {
  write_fields(archive, *this);
}

void CrystalSymmetryOperator::read(Archive& archive) {
  read_fields(archive, *this);
}
