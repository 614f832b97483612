// What holds for every record that is kept in an archive: its bytes, and what damage to them does.
#include <gtest/gtest.h>

#include "records/sample_records.h"

namespace {

template <class Record>
class StoredRecord : public testing::Test {};
using Records = testing::Types<ChemicalClassification, ChemicalInfo, CrystalInfo, SigmaRange,
                               ExperimentalInfo, EditorsInfo, Journal, Publication>;
TYPED_TEST_SUITE(StoredRecord, Records);

enum class Outcome { read_back, stream_ended, refused };

template <class Record>
Outcome read_damaged(const std::string& contents) {
  Record record = Sample<Record>::fresh();
  try {
    const long consumed = read_from(contents, [&record](Archive& archive) { record.read(archive); });
    EXPECT_LE(consumed, static_cast<long>(contents.size()));
    return Outcome::read_back;
  } catch (const ArchiveError&) {
    return Outcome::stream_ended;
  } catch (const std::invalid_argument&) {
    return Outcome::refused;
  }
}

// The stored bytes with each count and length in turn replaced by `value`.
template <class Record>
std::vector<std::string> with_each_count_replaced(int value) {
  std::vector<std::string> all;
  StoredFields fields = Sample<Record>::stored();
  for (StoredField& field : fields) {
    if (!field.counted) continue;
    const std::string good = field.bytes;
    field.bytes.replace(0, 4, int32(value));
    all.push_back(joined(fields));
    field.bytes = good;
  }
  return all;
}

TYPED_TEST(StoredRecord, IsItsFieldsInOrderAndNothingElse) {
  EXPECT_EQ(bytes_of(Sample<TypeParam>::filled()), joined(Sample<TypeParam>::stored()));
}

TYPED_TEST(StoredRecord, ReadsBackWholeAndConsumesItsOwnBytesOnly) {
  const std::string stored = joined(Sample<TypeParam>::stored());
  TypeParam record = Sample<TypeParam>::fresh();
  EXPECT_EQ(read_from(stored + "next", [&](Archive& archive) { record.read(archive); }),
            static_cast<long>(stored.size()));
  EXPECT_EQ(bytes_of(record), stored);
}

TYPED_TEST(StoredRecord, ReadsBackOverAnEarlierOne) {
  TypeParam record = Sample<TypeParam>::filled();
  const std::string other = bytes_of(Sample<TypeParam>::filled());
  read_from(other, [&](Archive& archive) { record.read(archive); });
  EXPECT_EQ(bytes_of(record), other);
}

TYPED_TEST(StoredRecord, CutShortAnywhereEndsInAnArchiveErrorOrReadsBack) {
  const std::string stored = joined(Sample<TypeParam>::stored());
  for (std::size_t length = 0; length < stored.size(); ++length) {
    EXPECT_NE(read_damaged<TypeParam>(stored.substr(0, length)), Outcome::refused) << length;
  }
}

TYPED_TEST(StoredRecord, CutShortInsideAScalarOrBeforeAFieldEndsInAnArchiveError) {
  std::string before;
  for (const StoredField& field : Sample<TypeParam>::stored()) {
    EXPECT_EQ(read_damaged<TypeParam>(before), Outcome::stream_ended) << before.size();
    if (!field.counted) {
      EXPECT_EQ(read_damaged<TypeParam>(before + field.bytes.substr(0, field.bytes.size() - 1)),
                Outcome::stream_ended);
    }
    before += field.bytes;
  }
}

TYPED_TEST(StoredRecord, WithANegativeCountOrLengthIsRefused) {
  for (const int value : {-1, INT_MIN}) {
    for (const std::string& contents : with_each_count_replaced<TypeParam>(value)) {
      EXPECT_EQ(read_damaged<TypeParam>(contents), Outcome::stream_ended);
    }
  }
}

// The bytes that follow are taken for more of the text or list; where it was the last field, that is all.
TYPED_TEST(StoredRecord, WithACountOrLengthBeyondItsBytesNeverHoldsMoreThanCame) {
  for (const std::string& contents : with_each_count_replaced<TypeParam>(INT_MAX)) {
    read_damaged<TypeParam>(contents);
  }
}

TYPED_TEST(StoredRecord, WithAnyFourBytesReplacedReadsBackOrIsRefused) {
  const std::string stored = joined(Sample<TypeParam>::stored());
  for (const int value : {-1, INT_MIN, INT_MAX, 0}) {
    for (std::size_t offset = 0; offset + 4 <= stored.size(); ++offset) {
      std::string damaged = stored;
      read_damaged<TypeParam>(damaged.replace(offset, 4, int32(value)));
    }
  }
}

// Records that entries hold through a handle.
template <class Record>
class RecordHandle : public testing::Test {};
using Components = testing::Types<ChemicalInfo, CrystalInfo, ExperimentalInfo, EditorsInfo, Publication>;
TYPED_TEST_SUITE(RecordHandle, Components);

TYPED_TEST(RecordHandle, IsStoredAsTheRecordAlone) {
  const THandle<TypeParam> handle(new TypeParam(Sample<TypeParam>::filled()));
  EXPECT_EQ(written([&](Archive& archive) { archive << handle; }), joined(Sample<TypeParam>::stored()));
}

TYPED_TEST(RecordHandle, ThatIsNullIsRefusedBeforeAnythingIsWritten) {
  const std::string left =
      written([](Archive& archive) { EXPECT_THROW(archive << THandle<TypeParam>(), NullHandleError); });
  EXPECT_EQ(left, "");
}

TYPED_TEST(RecordHandle, ReadsANewRecordAndLeavesTheOldOneToItsOtherHolders) {
  THandle<TypeParam> handle(new TypeParam);
  const THandle<TypeParam> other_holder = handle;
  read_from(joined(Sample<TypeParam>::stored()), [&](Archive& archive) { archive >> handle; });
  EXPECT_TRUE(*handle == Sample<TypeParam>::filled());
  EXPECT_TRUE(*other_holder == TypeParam());
  EXPECT_EQ(other_holder.use_count(), 1);
}

TYPED_TEST(RecordHandle, KeepsTheNewRecordWhenItsReadFails) {
  THandle<TypeParam> handle(new TypeParam(Sample<TypeParam>::filled()));
  EXPECT_THROW(read_from("", [&](Archive& archive) { archive >> handle; }), ArchiveError);
  EXPECT_TRUE(*handle == TypeParam());
}

TYPED_TEST(RecordHandle, PrintsTheRecord) {
  const THandle<TypeParam> handle(new TypeParam(Sample<TypeParam>::filled()));
  std::ostringstream os;
  os << handle;
  EXPECT_EQ(os.str(), printed(*handle));
}

TYPED_TEST(RecordHandle, ThatIsNullPrintsAsZeroHandle) {
  std::ostringstream os;
  os << THandle<TypeParam>();
  EXPECT_EQ(os.str(), "<zero handle>");
}

TYPED_TEST(RecordHandle, SharesItsRecordWithItsCopies) {
  const THandle<TypeParam> handle(new TypeParam);
  {
    const THandle<TypeParam> copy = handle;
    EXPECT_EQ(copy.get(), handle.get());
    EXPECT_EQ(handle.use_count(), 2);
  }
  EXPECT_EQ(handle.use_count(), 1);
}

}  // namespace
