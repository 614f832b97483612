// A record made of the bytes: what it writes reads back as its equal, which writes and prints the same.
#include <database_entry/database_entry.h>
#include <reliability/support/memory_stream.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "byte_source.h"
#include "entry_point.h"

namespace {

template <class Record>
void expect_round_trip(const Record& record, Record back) {
  std::string bytes;
  try {
    bytes = archived(record);
    read_stream(back, bytes);
  } catch (const std::invalid_argument&) {
    return;  // an enumeration that is no member
  }
  require(archived(back) == bytes, "what was read back writes other bytes");
  require(printed(back) == printed(record), "what was read back prints another text");
  if constexpr (requires { record == record; }) {
    // A NaN makes some records unequal to themselves.
    require((back == record) == (record == record), "what was read back is not equal");
  }
}

// Some value for a field, by its type. A new field of a type that is listed here needs nothing.
void fill(ByteSource& source, int& value) {
  value = source.scalar<int>();
}
void fill(ByteSource& source, double& value) {
  value = source.scalar<double>();
}
void fill(ByteSource& source, bool& value) {
  value = source.flag();
}
void fill(ByteSource& source, std::string& value) {
  value = source.text();
}

// A member, or one of the values next to them.
template <class Enumeration>
requires std::is_enum_v<Enumeration>
void fill(ByteSource& source, Enumeration& value) {
  std::vector<Enumeration> members;
  enum_texts<Enumeration>()->all_members(members);
  const auto [lowest, highest] = std::minmax_element(members.begin(), members.end());
  value = static_cast<Enumeration>(source.between(*lowest - 1, *highest + 1));
}

void fill(ByteSource& source, ChemicalClassification& value) {
  value = ChemicalClassification(static_cast<ChemicalClassification::Classifier>(source.between(-1, 12)));
}

void fill(ByteSource& source, Journal& value) {
  value = Journal(source.between(1, 256) * 6);
}

void fill(ByteSource& source, Date& value) {
  value =
      source.flag() ? Date() : Date(source.between(1900, 2100), source.between(1, 12), source.between(1, 28));
}

void fill(ByteSource& source, Range<double, DoubleComparator>& value) {
  const auto condition = [&] { return static_cast<RangeLimit::LimitCondition>(source.between(-1, 3)); };
  const auto lower = source.scalar<double>();
  const auto lower_condition = condition();
  const auto upper = source.scalar<double>();
  value = {lower, lower_condition, upper, condition(), DoubleComparator()};
}

template <class Element>
void fill(ByteSource& source, std::vector<Element>& values) {
  values = source.list([&] {
    Element value{};
    fill(source, value);
    return value;
  });
}

template <class Record>
Record filled(ByteSource& source) {
  Record record;
  for_each_field(record, [&](const char*, auto& value) { fill(source, value); });
  return record;
}

CrossReferenceInfo cross_reference_info(ByteSource& source) {
  CrossReferenceInfo result;
  source.list([&] {
    const auto type = static_cast<DatabaseCrossReference::CrossReferenceType>(source.between(1, 6));
    result.insert(DatabaseCrossReference(type, source.text()));
    return 0;
  });
  return result;
}

DepositionInfo deposition_info(ByteSource& source) {
  DepositionInfo result;
  source.list([&] {
    const auto type = static_cast<DepositionInfo::DepositionType>(source.between(0, 11));
    result.set_text(type, source.text());
    return 0;
  });
  return result;
}

}  // namespace

void take(const std::uint8_t* data, std::size_t size) {
  ByteSource source(data, size);
  switch (source.between(0, 6)) {
    case 0:
      expect_round_trip(filled<Publication>(source), Publication());
      break;
    case 1:
      expect_round_trip(filled<ExperimentalInfo>(source), ExperimentalInfo());
      break;
    case 2:
      expect_round_trip(filled<EditorsInfo>(source), EditorsInfo());
      break;
    case 3:
      expect_round_trip(filled<ChemicalInfo>(source), ChemicalInfo());
      break;
    case 4:
      expect_round_trip(filled<CrystalInfo>(source), CrystalInfo());
      break;
    case 5:
      expect_round_trip(cross_reference_info(source), CrossReferenceInfo());
      break;
    case 6:
      expect_round_trip(deposition_info(source), DepositionInfo());
      break;
  }
}
