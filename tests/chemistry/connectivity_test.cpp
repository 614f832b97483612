#include <chemistry/connectivity.h>
#include <gtest/gtest.h>
#include <utilities/null_handle_error.h>

#include "support/damage.h"
#include "support/stored_samples.h"

namespace {

std::string stored_atoms() {
  return bytes(int32(2), text("N"), text("N1"), int32(1), int32(3),  //
               text("O"), text(""), int32(-1), int32(0));
}

std::string stored_bond(std::int32_t first, std::int32_t second, std::int32_t type) {
  return bytes(int32(first), int32(second), int32(type));
}

std::string stored_connectivity() {
  return bytes(stored_atoms(), int32(2), stored_bond(0, 1, 1), stored_bond(1, 0, 99));
}

Connectivity read_connectivity(const std::string& stored) {
  Connectivity connectivity;
  read_from(stored, [&](Archive& archive) { connectivity.read(archive); });
  return connectivity;
}

TEST(Connectivity, ReadsBackItsAtomsAndItsBonds) {
  const Connectivity connectivity = read_connectivity(stored_connectivity());
  ASSERT_EQ(connectivity.atoms.size(), 2u);
  EXPECT_EQ(connectivity.atoms[0]->label, "N1");
  EXPECT_EQ(connectivity.atoms[0]->hydrogen_count, 3);
  EXPECT_EQ(connectivity.atoms[1]->charge, -1);
  ASSERT_EQ(connectivity.bonds.size(), 2u);
  EXPECT_EQ(connectivity.bonds[0]->second, connectivity.atoms[1]);
  EXPECT_EQ(static_cast<int>(connectivity.bonds[1]->type), 99) << "no bond type, but kept as it came";
}

TEST(Connectivity, WritesTheBytesItWasReadFrom) {
  const Connectivity connectivity = read_connectivity(stored_connectivity());
  EXPECT_EQ(written([&](Archive& archive) { connectivity.write(archive); }), stored_connectivity());
}

TEST(Connectivity, EqualsACopyMadeOfOtherObjects) {
  EXPECT_EQ(read_connectivity(stored_connectivity()), read_connectivity(stored_connectivity()));
  EXPECT_EQ(Connectivity(), Connectivity());
}

TEST(Connectivity, DiffersInAnAtomABondOrTheirNumber) {
  const Connectivity original = read_connectivity(stored_connectivity());
  Connectivity other = read_connectivity(stored_connectivity());
  other.atoms[1]->charge = 0;
  EXPECT_NE(original, other);
  other = read_connectivity(stored_connectivity());
  other.bonds[0]->type = BondType::double_bond;
  EXPECT_NE(original, other);
  other = read_connectivity(stored_connectivity());
  other.bonds[0]->second = other.atoms[0];
  EXPECT_NE(original, other);
  other.bonds.clear();
  EXPECT_NE(original, other);
}

TEST(Connectivity, WithABondToAStrangeAtomEqualsNoneAndIsNotWritten) {
  Connectivity connectivity = read_connectivity(stored_connectivity());
  connectivity.bonds[1]->first = THandle<ConnectivityAtom>(new ConnectivityAtom);
  connectivity.bonds[1]->first->label = "H9";
  EXPECT_NE(connectivity, connectivity);
  written([&](Archive& archive) {
    EXPECT_EQ(message_of<std::invalid_argument>([&] { connectivity.write(archive); }),
              "Invalid Connectivity: bond 1 names atom H9, which is not in the list");
  });
}

TEST(Connectivity, FindsAnAtomThatIsListedTwiceAtItsFirstPlace) {
  Connectivity connectivity = read_connectivity(stored_connectivity());
  connectivity.atoms.push_back(connectivity.atoms[0]);
  const std::string stored = written([&](Archive& archive) { connectivity.write(archive); });
  EXPECT_EQ(stored.substr(stored.size() - 24), bytes(stored_bond(0, 1, 1), stored_bond(1, 0, 99)));
}

TEST(ConnectivityAtom, IsElementLabelChargeAndHydrogenCount) {
  ConnectivityAtom atom;
  const std::string stored = bytes(text("N"), text("N1"), int32(1), int32(3));
  read_from(stored, [&](Archive& archive) { atom.read(archive); });
  EXPECT_EQ(atom.label, "N1");
  EXPECT_EQ(atom.hydrogen_count, 3);
  EXPECT_EQ(written([&](Archive& archive) { atom.write(archive); }), stored);
}

TEST(Connectivity, WithABondThatEndsAtAStrangeAtomEqualsNoneAndIsNotWritten) {
  const Connectivity original = read_connectivity(stored_connectivity());
  Connectivity connectivity = read_connectivity(stored_connectivity());
  connectivity.bonds[1]->second = THandle<ConnectivityAtom>(new ConnectivityAtom);
  connectivity.bonds[1]->second->label = "H9";
  EXPECT_NE(original, connectivity);
  EXPECT_NE(connectivity, original);
  written([&](Archive& archive) {
    EXPECT_EQ(message_of<std::invalid_argument>([&] { connectivity.write(archive); }),
              "Invalid Connectivity: bond 1 names atom H9, which is not in the list");
  });
}

TEST(Connectivity, WithAMissingObjectEqualsNoneThatHasIt) {
  const Connectivity original = read_connectivity(stored_connectivity());
  Connectivity connectivity = read_connectivity(stored_connectivity());
  connectivity.bonds[0] = THandle<ConnectivityBond>();
  EXPECT_NE(original, connectivity);
  EXPECT_NE(connectivity, original);
}

TEST(Connectivity, WithAMissingObjectIsNotWritten) {
  Connectivity without_atom;
  without_atom.atoms.resize(1);
  Connectivity without_bond;
  without_bond.bonds.resize(1);
  Connectivity without_end;
  without_end.bonds.push_back(THandle<ConnectivityBond>(new ConnectivityBond));
  for (const Connectivity* each : {&without_atom, &without_bond, &without_end}) {
    written([&](Archive& archive) { EXPECT_THROW(each->write(archive), NullHandleError); });
  }
  EXPECT_EQ(without_atom, without_atom);
  EXPECT_NE(without_bond, without_end);
}

TEST(Connectivity, RefusesABondToAnAtomThatIsNotThere) {
  struct Row {
    std::int32_t first, second;
    const char* message;
  };
  for (const Row& row : {
           Row{2, 0, "Invalid Connectivity: bond 1 names atom 2, which is not in the list"},
           {0, -1, "Invalid Connectivity: bond 1 names atom -1, which is not in the list"},
           {INT32_MIN, 0, "Invalid Connectivity: bond 1 names atom -2147483648, which is not in the list"},
           {0, INT32_MAX, "Invalid Connectivity: bond 1 names atom 2147483647, which is not in the list"},
       }) {
    Connectivity back;
    const std::string stored =
        bytes(stored_atoms(), int32(2), stored_bond(0, 1, 1), stored_bond(row.first, row.second, 1));
    EXPECT_EQ(message_of<std::invalid_argument>(
                  [&] { read_from(stored, [&](Archive& archive) { back.read(archive); }); }),
              row.message);
    EXPECT_EQ(back.bonds.size(), 1u) << "the bonds before it stay";
  }
}

TEST(Connectivity, MakesNewAtomsWhenItIsRead) {
  Connectivity connectivity = read_connectivity(stored_connectivity());
  const THandle<ConnectivityAtom> old = connectivity.atoms[1];
  read_from(bytes(int32(0), int32(0)), [&](Archive& archive) { connectivity.read(archive); });
  EXPECT_EQ(connectivity, Connectivity());
  EXPECT_EQ(old->element, "O");
}

TEST(Connectivity, ThrowsWhereverTheStreamEnds) {
  for_every_truncation(stored_connectivity(), [](const std::string& stored, const Damage&) {
    EXPECT_THROW(read_connectivity(stored), ArchiveError) << stored.size();
  });
}

TEST(Connectivity, RefusesCountsThatTheStreamDoesNotBearOut) {
  for (const std::int32_t count : {-1, INT32_MIN, INT32_MAX}) {
    EXPECT_THROW(read_connectivity(int32(count)), ArchiveError) << count;
    EXPECT_THROW(read_connectivity(bytes(stored_atoms(), int32(count))), ArchiveError) << count;
  }
}

TEST(Connectivity, SurvivesDamageToAnyByte) {
  for_every_telling_byte(stored_connectivity(), [](const std::string& stored, const Damage&) {
    Connectivity connectivity;
    try {
      read_from(stored, [&](Archive& archive) { connectivity.read(archive); });
    } catch (const ArchiveError&) {
    } catch (const std::invalid_argument&) {
    }
    EXPECT_EQ(connectivity, connectivity) << "whatever came is whole";
  });
}

}  // namespace
