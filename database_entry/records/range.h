// An interval of values; each limit has its condition. A comparator says when two limits are the same.
//
//   Range<double, DoubleComparator> sigma(0.001, RangeLimit::inclusive, 0.005, RangeLimit::inclusive,
//                                         DoubleComparator());
//
// Bytes: lower condition, upper condition, lower value, upper value. The comparator is neither stored nor
// printed: a range that is read keeps the one it had.
// Fails: read() throws ArchiveError where the stream ends; what was read before it stays.
#pragma once

#include <mathematics/range_limit.h>
#include <utilities/archive.h>
#include <utilities/fields.h>

#include <ostream>
#include <tuple>

template <class T, class Comparator>
class Range {
 public:
  Range() = default;
  Range(T lower, RangeLimit::LimitCondition lower_condition, T upper,
        RangeLimit::LimitCondition upper_condition, Comparator comparator)
      : lower_(lower),
        lower_condition_(lower_condition),
        upper_(upper),
        upper_condition_(upper_condition),
        comparator_(comparator) {}

  [[nodiscard]] T lower() const { return lower_; }
  [[nodiscard]] RangeLimit::LimitCondition lower_condition() const { return lower_condition_; }
  [[nodiscard]] T upper() const { return upper_; }
  [[nodiscard]] RangeLimit::LimitCondition upper_condition() const { return upper_condition_; }
  [[nodiscard]] const Comparator& comparator() const& { return comparator_; }
  [[nodiscard]] Comparator comparator() && { return comparator_; }

  void write(Archive& archive) const {
    std::apply([&](const auto&... each) { (archive << ... << each); }, FieldAccess::tie(*this));
  }

  void read(Archive& archive) {
    std::apply([&](auto&... each) { (archive >> ... >> each); }, FieldAccess::tie(*this));
  }

  // Conditions and values run together, without a separator.
  void print(std::ostream& os) const { os << lower_condition_ << upper_condition_ << lower_ << upper_; }

  // The comparator of this range decides, whatever the other's says: with different comparators a == b and
  // b == a may differ.
  bool operator==(const Range& other) const {
    return lower_condition_ == other.lower_condition_ && upper_condition_ == other.upper_condition_ &&
           comparator_.equal(lower_, other.lower_) && comparator_.equal(upper_, other.upper_);
  }

  // In archive order. The comparator is none of them: a range that is read keeps its own.
  static constexpr auto fields() {
    return std::tuple{ReadOnlyField{"lower_condition", &Range::lower_condition_},
                      ReadOnlyField{"upper_condition", &Range::upper_condition_},
                      ReadOnlyField{"lower", &Range::lower_}, ReadOnlyField{"upper", &Range::upper_}};
  }
  static constexpr bool archived_by_fields = true;

 private:
  T lower_ = {};
  RangeLimit::LimitCondition lower_condition_ = RangeLimit::inclusive;
  T upper_ = {};
  RangeLimit::LimitCondition upper_condition_ = RangeLimit::inclusive;
  Comparator comparator_;
};

template <class T, class Comparator>
Archive& operator<<(Archive& archive, const Range<T, Comparator>& range) {
  range.write(archive);
  return archive;
}

template <class T, class Comparator>
Archive& operator>>(Archive& archive, Range<T, Comparator>& range) {
  range.read(archive);
  return archive;
}

template <class T, class Comparator>
std::ostream& operator<<(std::ostream& os, const Range<T, Comparator>& range) {
  range.print(os);
  return os;
}
