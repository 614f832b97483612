// What holds for every record that is kept in an archive: its bytes, and what damage to them does.
#include <gtest/gtest.h>

#include "support/damage.h"
#include "support/sample_records.h"

namespace {

template <class Record>
class StoredRecord : public testing::Test {};
using Records = testing::Types<ChemicalClassification, ChemicalInfo, CrystalInfo, SigmaRange,
                               ExperimentalInfo, EditorsInfo, Journal, Publication>;
TYPED_TEST_SUITE(StoredRecord, Records);

template <class Record>
std::string stored_bytes() {
  return Sample<Record>::stored().bytes();
}

enum class Outcome { read_back, stream_ended, refused };

template <class Record>
Outcome read_damaged(const std::string& contents) {
  Record record = Sample<Record>::fresh();
  try {
    const long consumed = read_from(contents, [&record](Archive& archive) { record.read(archive); });
    EXPECT_LE(consumed, static_cast<long>(contents.size()));
    EXPECT_LE(bytes_of(record).size(), contents.size()) << "it holds more than came";
    return Outcome::read_back;
  } catch (const ArchiveError&) {
    return Outcome::stream_ended;
  } catch (const std::invalid_argument&) {
    return Outcome::refused;
  }
}

TYPED_TEST(StoredRecord, IsItsFieldsInOrderAndNothingElse) {
  EXPECT_EQ(bytes_of(Sample<TypeParam>::filled()), stored_bytes<TypeParam>());
}

TYPED_TEST(StoredRecord, ReadsBackWholeAndConsumesItsOwnBytesOnly) {
  const std::string stored = stored_bytes<TypeParam>();
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
  for_every_truncation(stored_bytes<TypeParam>(), [](const std::string& contents, const Damage& damage) {
    EXPECT_NE(read_damaged<TypeParam>(contents), Outcome::refused) << damage;
  });
}

TYPED_TEST(StoredRecord, CutShortInsideAScalarOrBeforeAFieldEndsInAnArchiveError) {
  const Layout layout = Sample<TypeParam>::stored();
  std::size_t end = layout.bytes().size();
  for (auto piece = layout.pieces().rbegin(); piece != layout.pieces().rend(); ++piece) {
    const std::string before = layout.bytes().substr(0, piece->offset);
    EXPECT_EQ(read_damaged<TypeParam>(before), Outcome::stream_ended) << before.size();
    if (!piece->counted) {
      EXPECT_EQ(read_damaged<TypeParam>(layout.bytes().substr(0, end - 1)), Outcome::stream_ended) << end;
    }
    end = piece->offset;
  }
  EXPECT_EQ(end, 0U);
}

TYPED_TEST(StoredRecord, WithAnyFourBytesReplacedReadsBackOrIsRefused) {
  int tried = 0;
  for_boundary_values_everywhere(stored_bytes<TypeParam>(), [&](const std::string& contents, const Damage&) {
    read_damaged<TypeParam>(contents);
    ++tried;
  });
  EXPECT_GT(tried, 0);
}

// Records with a text or a list.
template <class Record>
class CountedRecord : public testing::Test {};
using CountedRecords =
    testing::Types<ChemicalInfo, CrystalInfo, ExperimentalInfo, EditorsInfo, Journal, Publication>;
TYPED_TEST_SUITE(CountedRecord, CountedRecords);

TYPED_TEST(CountedRecord, WithANegativeCountOrLengthIsRefused) {
  int tried = 0;
  for (const int value : {-1, INT_MIN}) {
    for_every_size(Sample<TypeParam>::stored(), value,
                   [&](const std::string& contents, const Damage& damage) {
                     EXPECT_EQ(read_damaged<TypeParam>(contents), Outcome::stream_ended) << damage;
                     ++tried;
                   });
  }
  EXPECT_GT(tried, 0);
}

// The bytes that follow are taken for more of the text or list; where it was the last field, that is all.
TYPED_TEST(CountedRecord, WithACountOrLengthBeyondItsBytesNeverHoldsMoreThanCame) {
  int tried = 0;
  for_every_size(Sample<TypeParam>::stored(), INT_MAX, [&](const std::string& contents, const Damage&) {
    read_damaged<TypeParam>(contents);
    ++tried;
  });
  EXPECT_GT(tried, 0);
}

// Records that entries hold through a handle.
template <class Record>
class RecordHandle : public testing::Test {};
using Components = testing::Types<ChemicalInfo, CrystalInfo, ExperimentalInfo, EditorsInfo, Publication>;
TYPED_TEST_SUITE(RecordHandle, Components);

TYPED_TEST(RecordHandle, IsStoredAsTheRecordAlone) {
  const THandle<TypeParam> handle(new TypeParam(Sample<TypeParam>::filled()));
  EXPECT_EQ(written([&](Archive& archive) { archive << handle; }), stored_bytes<TypeParam>());
}

TYPED_TEST(RecordHandle, ThatIsNullIsRefusedBeforeAnythingIsWritten) {
  const std::string left =
      written([](Archive& archive) { EXPECT_THROW(archive << THandle<TypeParam>(), NullHandleError); });
  EXPECT_EQ(left, "");
}

TYPED_TEST(RecordHandle, ReadsANewRecordAndLeavesTheOldOneToItsOtherHolders) {
  THandle<TypeParam> handle(new TypeParam);
  const THandle<TypeParam> other_holder = handle;
  read_from(stored_bytes<TypeParam>(), [&](Archive& archive) { archive >> handle; });
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
