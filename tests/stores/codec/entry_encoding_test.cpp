// The layouts of the components that archives do not hold, byte for byte, and what damage does to them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stores/codec/entry_encoding.h>

#include <string>

#include "stores/linked_entry.h"
#include "support/bytes.h"

namespace {

// A small entry: one atom in the crystal, one in the diagram, which match; a hydrogen atom of no list.
struct SmallEntry {
  THandle<Atom> carbon = handle_to(Atom{"C1", "C", {0.1, 0.2, 0.3}, 1.0});
  THandle<Atom> hydrogen = handle_to(Atom{"H1", "H", {0.0, 0.0, 0.5}, 0.5});
  THandle<DiagramAtom> drawn = handle_to(DiagramAtom{"C", "", -1, 1.0, 2.0});
  ComponentHandles handles;

  SmallEntry() {
    handles[component_row<ComponentKind::crystal_maker>] =
        handle_to(CrystalMaker(handle_to(Cell()), {carbon}));
    ChemicalDiagram diagram;
    diagram.atoms = {drawn, {}};
    diagram.bonds = {handle_to(DiagramBond{drawn, drawn, BondType::single_bond})};
    handles[component_row<ComponentKind::chemical_diagram>] = handle_to(diagram);
    CrystalDiagramMatch match;
    match.atoms = {{carbon, drawn}};
    match.bonds = {{handle_to(Bond{carbon, hydrogen, BondType::single_bond}), diagram.bonds[0]}};
    handles[component_row<ComponentKind::crystal_diagram_match>] = handle_to(match);
    handles[component_row<ComponentKind::disorder_selector>] =
        handle_to(DisorderSelectors{handle_to(DisorderSelector{"A", "1", {carbon, hydrogen}}), {}});
    const auto bond = handle_to(PublishedBond(carbon, hydrogen, UncertainValue(1.08, 0.02), true, false));
    handles[component_row<ComponentKind::published_geometry>] =
        handle_to(PublishedGeometry(handle_to(std::vector<THandle<PublishedBond>>{bond, bond}), true));
  }

  [[nodiscard]] CrystalStructureImmediateDatabaseEntry entry() const {
    return CrystalStructureImmediateDatabaseEntry::from(DatabaseEntryIdentifier("SMALL"), handles);
  }
};

std::string bytes_of(ComponentKind kind) {
  ByteStreams streams;
  return encode(SmallEntry().entry(), streams).components[slot(kind)].value_or("");
}

// Where an object is: the kind of its component, and its place in the table there.
std::string in(int kind, int position) {
  return bytes(int32(kind), int32(position));
}

TEST(ComponentLayout, OfADiagramIsItsAtomsItsBondsAndTheListsOfBoth) {
  const std::string expected =
      // begin diagram
      bytes(int32(1),                                                              // the layout
            int32(1), text("C"), text(""), int32(-1), float64(1.0), float64(2.0),  // one atom: charge, x, y
            int32(1), in(11, 0), in(11, 0), int32(1),  // one bond: two atoms, its type
            int32(2), in(11, 0), in(0, 0),             // the list of atoms, of which one is null
            int32(1), in(11, 0));                      // the list of bonds
  // end diagram
  EXPECT_EQ(bytes_of(ComponentKind::chemical_diagram), expected);
}

TEST(ComponentLayout, OfAMatchIsTheObjectsThatLiveInItAndThePairs) {
  const std::string expected =
      // begin match
      bytes(int32(1),  // the layout
            int32(1), text("H1"), text("H"), float64(0), float64(0), float64(0.5), float64(0.5),  // one atom
            int32(1), in(1, 0), in(12, 0), int32(1),  // one bond, from the crystal's atom to it
            int32(0), int32(0),                       // no atom and no bond of a diagram
            int32(1), in(1, 0), in(11, 0),            // a pair of atoms
            int32(1), in(12, 0), in(11, 0));          // a pair of bonds
  // end match
  EXPECT_EQ(bytes_of(ComponentKind::crystal_diagram_match), expected);
}

TEST(ComponentLayout, OfSelectorsIsEachOnceAndTheListAsPositions) {
  const std::string expected =
      // begin selectors
      bytes(int32(1),  // the layout
            int32(0),  // no atom lives here: one is in the match
            int32(1), text("A"), text("1"), int32(2), in(1, 0), in(12, 0),  // one selector and its atoms
            int32(2), int32(0), int32(-1));  // the list: the first, and a null handle
  // end selectors
  EXPECT_EQ(bytes_of(ComponentKind::disorder_selector), expected);
}

TEST(ComponentLayout, OfPublishedGeometryIsEachBondOnceAndTheListAsPositions) {
  const std::string expected =
      // begin geometry
      bytes(int32(1),                      // the layout
            int32(0),                      // no atom lives here
            boolean(true), boolean(true),  // its flag; whether there is a list
            int32(1), in(1, 0), in(12, 0), float64(1.08), float64(0.02), boolean(true), boolean(false),
            int32(2), int32(0), int32(0));  // the list has the bond twice
  // end geometry
  EXPECT_EQ(bytes_of(ComponentKind::published_geometry), expected);
}

TEST(EntryEncoding, GivesTheSameBytesAgain) {
  ByteStreams streams;
  const EntryBytes first = encode(linked_entry(), streams);
  EXPECT_EQ(encode(*decode(first, streams), streams), first);
}

// Calls `look` with the bytes of the linked entry in which one component is damaged.
template <class Damage>
void expect_no_harm(const Damage& damage) {
  ByteStreams streams;
  const EntryBytes sound = encode(linked_entry(), streams);
  for (std::size_t index = 0; index < component_count; ++index) {
    const std::string& bytes = *sound.components[index];
    for (std::size_t at = 0; at < bytes.size(); ++at) {
      EntryBytes damaged = sound;
      damaged.components[index] = damage(bytes, at);
      try {
        // What can be read can be written.
        static_cast<void>(encode(*decode(damaged, streams), streams));
      } catch (const ComponentFault& fault) {
        EXPECT_STRNE(fault.what(), "");
      }
    }
  }
}

TEST(EntryEncoding, RefusesOrReadsEveryDamage) {
  expect_no_harm([](const std::string& bytes, std::size_t at) { return bytes.substr(0, at); });
  for (const char value : {'\0', '\1', '\x7F', '\xFF'}) {
    expect_no_harm([value](std::string bytes, std::size_t at) {
      bytes[at] = value;
      return bytes;
    });
  }
}

TEST(EntryEncoding, RefusesComponentsThatAreCutOrTooLong) {
  ByteStreams streams;
  const EntryBytes sound = encode(linked_entry(), streams);
  for (std::size_t index = 0; index < component_count; ++index) {
    for (const std::string& bytes : {sound.components[index]->substr(0, sound.components[index]->size() - 1),
                                     *sound.components[index] + "x"}) {
      EntryBytes damaged = sound;
      damaged.components[index] = bytes;
      EXPECT_THROW(static_cast<void>(decode(damaged, streams)), ComponentFault) << index + 1;
    }
  }
}

TEST(EntryEncoding, RefusesALayoutThatItDoesNotKnow) {
  ByteStreams streams;
  EntryBytes bytes = encode(linked_entry(), streams);
  bytes.components[slot(ComponentKind::published_geometry)]->replace(0, 4, int32(2));
  EXPECT_EQ(message_of<ComponentFault>([&] { static_cast<void>(decode(bytes, streams)); }),
            "layout 2 is not known");
}

TEST(EntryEncoding, RefusesAReferenceToAnObjectThatIsNotThere) {
  ByteStreams streams;
  EntryBytes bytes = encode(linked_entry(), streams);
  bytes.components[slot(ComponentKind::crystal_maker)].reset();
  EXPECT_EQ(message_of<ComponentFault>([&] { static_cast<void>(decode(bytes, streams)); }),
            "it refers to object 0 of component 1, which is not there");
}

}  // namespace
