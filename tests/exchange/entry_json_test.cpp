#include <exchange/entry_json.h>
#include <gmock/gmock.h>

#include <bit>
#include <cstdint>

#include "exchange/full_entry.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Json = nlohmann::ordered_json;

Json full_json() {
  return entry_json(full_entry());
}

TEST(EntryJson, HasAllOfAnEntryAndReadsBackToIt) {
  const Json json = Json::parse(full_json().dump());
  const JsonEntry back = entry_from_json(json);
  EXPECT_EQ(archived(*back.entry), archived(full_entry()));
  EXPECT_EQ(entry_json(*back.entry).dump(), json.dump());
  EXPECT_THAT(back.absent, IsEmpty());
  EXPECT_THAT(back.unknown, IsEmpty());
}

TEST(EntryJson, NamesTheIdentifierAndTheSixteenComponents) {
  std::vector<std::string> expected = {"identifier"};
  for_each_component([&](auto component) { expected.emplace_back(component.name); });
  std::vector<std::string> names;
  const Json json = full_json();
  for (const auto& [name, value] : json.items()) names.push_back(name);
  EXPECT_EQ(names, expected);
}

TEST(EntryJson, HasNullForANullComponent) {
  const Entry empty = Entry::from(DatabaseEntryIdentifier("X"), ComponentHandles());
  const Json json = entry_json(empty);
  for_each_component([&](auto component) { EXPECT_TRUE(json[component.name].is_null()) << component.name; });
  const JsonEntry back = entry_from_json(json);
  for_each_component(
      [&](auto component) { EXPECT_TRUE(component.get(*back.entry).is_null()) << component.name; });
}

TEST(EntryJson, HasTheAtomsAndBondsOfTheConnectivity) {
  EXPECT_EQ(
      full_json()["connectivity_info"].dump(),
      R"({"atoms":[{"element":"C","label":"C1","charge":0,"hydrogen_count":3},)"
      R"({"element":"O","label":"","charge":-1,"hydrogen_count":0}],"bonds":[{"first":1,"second":0,"type":1}]})");
}

TEST(EntryJson, PointsToAtomsByTheirPlaceInTheList) {
  const Json json = full_json();
  EXPECT_EQ(json["crystal_diagram_match"].dump(),
            R"({"atoms":[[1,1],[0,null]],"bonds":[[{"first":0,"second":1,"type":5},0]]})");
  EXPECT_EQ(json["disorder_selector"][0]["atoms"][0].dump(), "2");
  EXPECT_EQ(json["published_geometry"]["bonds"][1]["second_atom"].dump(), "2");
}

TEST(EntryJson, KeepsAnAtomTogetherWithWhoPointsToIt) {
  const JsonEntry back = entry_from_json(full_json());
  const auto& atoms = back.entry->crystal_maker()->atoms();
  EXPECT_EQ(back.entry->crystal_diagram_match()->atoms[0].first, atoms[1]);
  EXPECT_EQ((*back.entry->published_geometry()->bonds)[0]->first_atom, atoms[0]);
  EXPECT_EQ(back.entry->cell(), back.entry->crystal_maker()->cell());
}

TEST(EntryJson, KeepsNumbersThatJsonDoesNotHave) {
  Entry entry = full_entry();
  const auto info = made<CrystalInfo>();
  info->z = std::numeric_limits<double>::infinity();
  info->z_prime = std::numeric_limits<double>::quiet_NaN();
  entry.set_crystal_info(info);
  const Json json = entry_json(entry);
  EXPECT_EQ(json["crystal_info"]["z"], "inf");
  EXPECT_EQ(json["crystal_info"]["z_prime"], "nan");
  EXPECT_EQ(archived(*entry_from_json(json).entry), archived(entry));
}

TEST(EntryJson, KeepsEveryBitOfANumberThatIsNone) {
  for (const std::uint64_t bits : {0x7ff8000000000000U, 0xfff8000000000000U, 0x7ff8000000000001U}) {
    Entry entry = full_entry();
    entry.crystal_info()->z = std::bit_cast<double>(bits);
    EXPECT_EQ(archived(*entry_from_json(entry_json(entry)).entry), archived(entry)) << bits;
  }
}

TEST(EntryJson, KeepsTheNumbersOfEnumerationsThatArchivesHold) {
  Entry entry = full_entry();
  entry.editors_info()->author_correspondence = static_cast<EditorsInfo::AuthorCorrespondence>(-1);
  entry.editors_info()->ignored_errors = static_cast<EditorsInfo::IgnoredErrors>(2147483647);
  entry.connectivity_info()->connectivity()->bonds[0]->type = static_cast<BondType>(-2147483647);
  entry.experimental_info()->mean_cc_bond_sigma = {0, static_cast<RangeLimit::LimitCondition>(9), 0,
                                                   RangeLimit::unbounded, DoubleComparator()};
  const std::string bytes = archived(entry);
  Entry back = full_entry();
  read_from(bytes, [&](Archive& archive) { back.read(archive); });
  EXPECT_EQ(archived(*entry_from_json(entry_json(back)).entry), bytes);
}

TEST(EntryJson, KeepsAnEmptyIdentifier) {
  const Entry entry = Entry::from(DatabaseEntryIdentifier(), ComponentHandles());
  const JsonEntry back = entry_from_json(entry_json(entry));
  EXPECT_THAT(back.absent, IsEmpty());
}

TEST(EntryJson, KeepsWhatOnlyAnArchiveCanHold) {
  // An operator of infinite translation, a date that is known to the month, depositions out of order.
  const std::string broken = written([](Archive& archive) {
    for (const int element : {1, 0, 0, 0, 1, 0, 0, 0, 1}) archive << element;
    archive << std::numeric_limits<double>::infinity() << 0.0 << 0.0;
  });
  CrystalSymmetryOperator symmetry_operator;
  read_from(broken, [&](Archive& archive) { symmetry_operator.read(archive); });
  Entry entry = full_entry();
  entry.cell()->symmetry_operators()->push_back(symmetry_operator);
  read_from(bytes(int32(2003), int32(5), int32(0)),
            [&](Archive& archive) { entry.editors_info()->accession_date.read(archive); });
  read_from(bytes(int32(2), int32(6), text("R1 "), int32(0), text("")),
            [&](Archive& archive) { entry.deposition_info()->read(archive); });
  EXPECT_EQ(archived(*entry_from_json(entry_json(entry)).entry), archived(entry));
}

TEST(EntryFromJson, HasTheDefaultsOfWhatIsNotThere) {
  const JsonEntry back = entry_from_json({{"identifier", "X"}, {"crystal_info", {{"z", 4}}}});
  EXPECT_EQ(back.entry->crystal_info()->z, 4.0);
  EXPECT_EQ(back.entry->publication()->journal.coden(), Journal::max_vorn_coden() + 1);
  EXPECT_TRUE(back.entry->chemical_diagram().is_null());
  EXPECT_THAT(back.absent, Contains("publication"));
  EXPECT_THAT(back.absent, Contains("crystal_info.z_prime"));
}

TEST(EntryFromJson, NamesWhatMeansNothing) {
  const JsonEntry back = entry_from_json(
      {{"identifier", "X"}, {"crystal_info", {{"colour", "blue"}}}, {"publisher", 1}, {"cell", {{"d", 1}}}});
  EXPECT_THAT(back.unknown, ElementsAre("cell.d", "crystal_info.colour", "publisher"));
}

struct FaultCase {
  const char* json;
  std::string message;
};

const std::string classes =
    "Carbohydrate; Nucleoside or Nucleotide; Amino-acid, peptide and complexes; Porphyrin, Corrin & "
    "Complexes; "
    "Antibiotic; Steroid; Terpene; Alkaloid; Miscellaneous natural products; Supramolecular Entity; High "
    "Polymer";

class WrongJson : public testing::TestWithParam<FaultCase> {};

TEST_P(WrongJson, IsNamedByItsField) {
  EXPECT_EQ(
      message_of<JsonEntryError>([] { static_cast<void>(entry_from_json(Json::parse(GetParam().json))); }),
      GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, WrongJson,
    testing::Values(
        FaultCase{"[]", "an object is expected"},
        FaultCase{R"({"identifier":1})", "identifier: a text is expected"},
        FaultCase{R"({"crystal_info":[]})", "crystal_info: an object is expected"},
        FaultCase{R"({"crystal_info":{"z":"four"}})", "crystal_info.z: a number is expected"},
        FaultCase{R"({"publication":{"year":1979.5}})", "publication.year: a whole number is expected"},
        FaultCase{R"({"publication":{"year":4294967296}})",
                  "publication.year: a number of 32 bits is expected"},
        FaultCase{R"({"publication":{"year":-2147483649}})",
                  "publication.year: a number of 32 bits is expected"},
        FaultCase{R"({"publication":{"authors":["A",2]}})", "publication.authors[1]: a text is expected"},
        FaultCase{R"({"identifier":"A","crystal_info":{"z":"4"}})",
                  "entry A: crystal_info.z: a number is expected"},
        FaultCase{R"({"experimental_info":{"probe":"light"}})",
                  "experimental_info.probe: 'light' is none of: unknown; x-ray; neutron; electron; gamma"},
        FaultCase{
            R"({"identifier":"A","experimental_info":{"probe":-1}})",
            "entry A: experimental_info.probe: -1 is none of: unknown; x-ray; neutron; electron; gamma"},
        FaultCase{R"({"experimental_info":{"powder":3}})",
                  "experimental_info.powder: 3 is none of: unknown; single crystal; powder"},
        FaultCase{R"({"experimental_info":{"intensity_method":-1}})",
                  "experimental_info.intensity_method: -1 is none of: unknown; photographic, visual; "
                  "photographic, densitometer; diffractometer"},
        FaultCase{R"({"editors_info":{"category":-1}})",
                  "editors_info.category: -1 is none of: unknown; unit cell only; qualitative; full "
                  "structure; pdb structure; database use"},
        FaultCase{R"({"editors_info":{"aser_match_flag":-2}})",
                  "editors_info.aser_match_flag: -2 is none of: inapplicable; not attempted; not matched; "
                  "partial match; perfect match; impossible match"},
        FaultCase{
            R"({"editors_info":{"ignored_errors":"some"}})",
            "editors_info.ignored_errors: 'some' is none of: no errors ignored; valency errors ignored; "
            "all errors ignored"},
        FaultCase{R"({"chemical_info":{"name":"a\u0000b"}})",
                  "chemical_info.name: any character but \\u0000 is expected, which byte 1 of the text is"},
        FaultCase{R"({"chemical_info":{"name":{"latin1":"\u0000"}}})",
                  "chemical_info.name: any character but \\u0000 is expected, which byte 0 of the text is"},
        FaultCase{R"({"identifier":"\u0000"})",
                  "identifier: any character but \\u0000 is expected, which byte 0 of the text is"},
        FaultCase{R"({"crystal_info":{"z":"nan:1"}})", "crystal_info.z: a number is expected"},
        FaultCase{R"({"crystal_maker":{"atoms":[null]}})", "crystal_maker.atoms[0]: an atom is expected"},
        FaultCase{R"({"cell":{"symmetry_operators":null}})", "cell.symmetry_operators: a list is expected"},
        FaultCase{R"({"connectivity_info":{"atoms":[null]}})",
                  "connectivity_info.atoms[0]: an atom is expected"},
        FaultCase{R"({"connectivity_info":{"bonds":[null]}})",
                  "connectivity_info.bonds[0]: a bond is expected"},
        FaultCase{R"({"connectivity_info":{"atoms":[{}],"bonds":[{"first":0,"second":{}}]}})",
                  "connectivity_info.bonds[0].second: the position of an atom is expected"},
        FaultCase{R"({"experimental_info":{"absolute_configuration":1}})",
                  "experimental_info.absolute_configuration: true or false is expected"},
        FaultCase{R"({"editors_info":{"accession_date":"2003-05"}})",
                  "editors_info.accession_date: a date is written as 2003-05-17"},
        FaultCase{R"({"cell":{"symmetry_operators":["x,y"]}})",
                  "cell.symmetry_operators[0]: Invalid CrystalSymmetryOperator \"x,y\" at offset 3: a comma "
                  "is missing"},
        FaultCase{R"({"crystal_maker":{"cell":null}})", "crystal_maker: a crystal has a cell"},
        FaultCase{R"({"chemical_info":{"classifiers":["Stone"]}})",
                  "chemical_info.classifiers[0]: 'Stone' is none of: " + classes},
        FaultCase{R"({"chemical_info":{"classifiers":[-1]}})",
                  "chemical_info.classifiers[0]: -1 is none of: " + classes},
        FaultCase{R"({"chemical_info":{"classifiers":["Error, None"]}})",
                  "chemical_info.classifiers[0]: 'Error, None' is none of: " + classes},
        FaultCase{R"({"chemical_info":{"name":{"latin1":"水"}}})",
                  "chemical_info.name: a character of ISO 8859-1 is expected"},
        FaultCase{R"({"connectivity_info":{"atoms":[],"bonds":[{"first":0,"second":0,"type":1}]}})",
                  "connectivity_info.bonds[0].first: position 0 is not in a list of 0"},
        FaultCase{R"({"cross_reference_info":[{"type":0,"text":""}]})",
                  "cross_reference_info[0].type: 0 is none of: RACEMATE; STEREOMER; ISOMER; "
                  "REINTERPRETATION_OF; REINTERPRETATION_SEE; COORDINATES_SEE"},
        FaultCase{R"({"cross_reference_info":[{"text":"no type"}]})",
                  "cross_reference_info[0]: a type is expected"},
        FaultCase{
            R"({"deposition_info":[{"kind":12,"text":""}]})",
            "deposition_info[0].kind: 12 is none of: VORN; FIZ; CONTRIBUTOR; IUCR Validation Code; IUCR "
            "Coeditor Code; JDS; RUSSIAN; ARCHIVE; MSD BIB; NBS ID; NBS CD; MRV Refcode"}));

}  // namespace
