#include <chemistry/cell.h>
#include <gtest/gtest.h>
#include <utilities/null_handle_error.h>

#include <cmath>

#include "support/damage.h"
#include "support/stored_samples.h"

namespace {

using Operators = std::vector<CrystalSymmetryOperator>;

THandle<Operators> screw_axis() {
  return THandle<Operators>(new Operators{CrystalSymmetryOperator("-x,1/2+y,-z")});
}

Cell monoclinic(const THandle<Operators>& operators) {
  return Cell(10.0, 11.0, 12.0, 90.0, 95.5, 90.0, operators);
}

Cell with_angles(double alpha, double beta, double gamma) {
  return Cell(2.0, 3.0, 5.0, alpha, beta, gamma, THandle<Operators>());
}

TEST(Cell, KnowsNoOperatorsByDefault) {
  EXPECT_EQ(Cell().a(), 0.0);
  EXPECT_EQ(Cell().volume(), 0.0);
  ASSERT_FALSE(Cell().symmetry_operators().is_null());
  EXPECT_TRUE(Cell().symmetry_operators()->empty());
}

TEST(Cell, GivesBackWhatItWasMadeFrom) {
  const THandle<Operators> operators = screw_axis();
  const Cell cell(10.0, 11.0, 12.0, 80.0, 95.5, 101.0, operators);
  EXPECT_EQ(cell.a(), 10.0);
  EXPECT_EQ(cell.b(), 11.0);
  EXPECT_EQ(cell.c(), 12.0);
  EXPECT_EQ(cell.alpha(), 80.0);
  EXPECT_EQ(cell.beta(), 95.5);
  EXPECT_EQ(cell.gamma(), 101.0);
  EXPECT_EQ(cell.symmetry_operators(), operators);
}

struct Volume {
  double alpha, beta, gamma, volume;
  const char* why;
};

TEST(Cell, HasTheVolumeOfItsAngles) {
  for (const Volume& row : {
           Volume{90.0, 90.0, 90.0, 30.0, "a box: the product of the edges"},
           {90.0, 90.0, 120.0, 30.0 * std::sqrt(0.75), "hexagonal: times the sine of 60 degrees"},
           {90.0, 150.0, 90.0, 15.0, "monoclinic: times the sine of beta"},
           {60.0, 60.0, 60.0, 30.0 * std::sqrt(0.5), "the primitive cell of a face-centred cube"},
       }) {
    EXPECT_NEAR(with_angles(row.alpha, row.beta, row.gamma).volume(), row.volume, 1e-12) << row.why;
  }
}

TEST(Cell, HasNoVolumeWhereItsAnglesCloseNoCell) {
  for (const Volume& row : {
           Volume{120.0, 120.0, 121.0, 0.0, "more than a full turn"},
           {30.0, 30.0, 90.0, 0.0, "one angle is larger than the other two together"},
           {0.0, 0.0, 0.0, 0.0, "three edges in one line"},
           {std::nan(""), 90.0, 90.0, 0.0, "not a number"},
           {90.0, HUGE_VAL, 90.0, 0.0, "infinite"},
       }) {
    EXPECT_EQ(with_angles(row.alpha, row.beta, row.gamma).volume(), row.volume) << row.why;
  }
}

TEST(Cell, IsSixNumbersThenTheCountedOperators) {
  EXPECT_EQ(written([](Archive& archive) { monoclinic(screw_axis()).write(archive); }),
            cell_layout(1).bytes());
}

TEST(Cell, ReadsBackWhole) {
  Cell cell;
  EXPECT_EQ(read_from(cell_layout(1).bytes(), [&](Archive& archive) { cell.read(archive); }),
            static_cast<long>(cell_layout(1).bytes().size()));
  EXPECT_EQ(cell, monoclinic(screw_axis()));
}

TEST(Cell, LeavesASharedListOfOperatorsAloneWhenItIsRead) {
  const THandle<Operators> shared(new Operators(3));
  Cell cell = monoclinic(shared);
  const Cell copy = cell;
  read_from(cell_layout(1).bytes(), [&](Archive& archive) { cell.read(archive); });
  EXPECT_EQ(copy.symmetry_operators(), shared);
  EXPECT_EQ(*shared, Operators(3));
  EXPECT_EQ(cell.symmetry_operators()->size(), 1u);
}

TEST(Cell, WithoutAListOfOperatorsGetsOneWhenItIsRead) {
  Cell cell = monoclinic(THandle<Operators>());
  read_from(cell_layout(1).bytes(), [&](Archive& archive) { cell.read(archive); });
  EXPECT_EQ(cell, monoclinic(screw_axis()));
}

TEST(Cell, WithoutAListOfOperatorsIsNotWritten) {
  const Cell cell = monoclinic(THandle<Operators>());
  const std::string stored =
      written([&](Archive& archive) { EXPECT_THROW(cell.write(archive), NullHandleError); });
  EXPECT_EQ(stored, "");
}

TEST(Cell, PrintsInTheFormattingOfTheStream) {
  EXPECT_EQ(printed(monoclinic(screw_axis())),
            "a: 10, b: 11, c: 12, alpha: 90, beta: 95.5, gamma: 90, symmetry operators: 1");
  std::ostringstream os;
  os << std::fixed;
  os.precision(2);
  monoclinic(THandle<Operators>()).print(os);
  EXPECT_EQ(os.str(),
            "a: 10.00, b: 11.00, c: 12.00, alpha: 90.00, beta: 95.50, gamma: 90.00, symmetry operators: "
            "<zero handle>");
}

TEST(Cell, EqualsAnotherWithEqualOperatorsInAnotherList) {
  EXPECT_EQ(monoclinic(screw_axis()), monoclinic(screw_axis()));
  EXPECT_EQ(monoclinic(THandle<Operators>()), monoclinic(THandle<Operators>()));
}

TEST(Cell, DiffersInAnyNumberAndInItsOperators) {
  const Cell cell = monoclinic(screw_axis());
  EXPECT_NE(cell, Cell(9.0, 11.0, 12.0, 90.0, 95.5, 90.0, screw_axis()));
  EXPECT_NE(cell, Cell(10.0, 11.0, 12.0, 90.0, 95.5, 91.0, screw_axis()));
  EXPECT_NE(cell, monoclinic(THandle<Operators>(new Operators(1))));
  EXPECT_NE(cell, monoclinic(THandle<Operators>()));
  EXPECT_NE(monoclinic(THandle<Operators>()), cell);
}

TEST(Cell, ThrowsWhereverTheStreamEnds) {
  for_every_truncation(cell_layout(1).bytes(), [](const std::string& stored, const Damage&) {
    Cell cell;
    EXPECT_THROW(read_from(stored, [&](Archive& archive) { cell.read(archive); }), ArchiveError)
        << stored.size();
  });
}

struct Count {
  std::int32_t count;
  const char* message;
};

TEST(Cell, RefusesACountThatTheStreamDoesNotBearOut) {
  for (const Count& row : {
           Count{-1, "Archive: negative count -1 at offset 48"},
           {INT32_MIN, "Archive: negative count -2147483648 at offset 48"},
           {INT32_MAX, "Archive: end of the stream while reading an int at offset 112"},
           {2, "Archive: end of the stream while reading an int at offset 112"},
       }) {
    const std::string stored =
        bytes(cell_numbers_layout().bytes(), int32(row.count), symmetry_operator_layout().bytes());
    Cell cell;
    EXPECT_EQ(
        message_of<ArchiveError>([&] { read_from(stored, [&](Archive& archive) { cell.read(archive); }); }),
        row.message);
    EXPECT_EQ(cell.beta(), 95.5) << "the numbers before the count stay";
    EXPECT_LE(cell.symmetry_operators()->size(), 1024u);
  }
}

TEST(Cell, IsDestroyedAsWhatItIsThroughAHandle) {
  struct Counted : Cell {
    explicit Counted(int& destroyed) : destroyed_(destroyed) {}
    ~Counted() override { ++destroyed_; }
    int& destroyed_;
  };
  int destroyed = 0;
  { const THandle<Cell> cell(new Counted(destroyed)); }
  EXPECT_EQ(destroyed, 1);
}

}  // namespace
