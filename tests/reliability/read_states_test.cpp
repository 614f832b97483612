// What a read that fails leaves: the fields before the failure are new, the others are old.
#include <database_entry/database_entry.h>
#include <gtest/gtest.h>
#include <reliability/support/subjects.h>

#include <limits>

namespace {

// One field of a record in its archive. Fields that are stored only after the last one has been read keep
// their old value until then.
struct Field {
  std::string fresh;
  std::string old;
  bool stored_last = false;
};

struct FieldwiseRecord {
  const char* name;
  std::vector<Field> fields;
};

Field a_text(const std::string& fresh) {
  return {text(fresh), text("old " + fresh)};
}
Field a_real(double fresh) {
  return {float64(fresh), float64(-fresh)};
}
Field an_int(int fresh) {
  return {int32(fresh), int32(fresh - 1)};
}
Field an_enumeration(int fresh) {
  return {int32(fresh), int32(fresh - 1), true};
}

const FieldwiseRecord fieldwise_records[] = {
    {"CrystalInfo",
     {a_real(4), a_real(0.5), a_text("color"), a_text("habit"), a_text("analogues"), a_text("melting point"),
      a_text("notes"), a_text("phase transitions"), a_text("polymorph"), a_text("sensitivity"),
      a_text("solvent"), a_text("disorder details"), a_text("other cell details")}},
    {"Journal", {a_text("name"), an_int(4), a_text("JACSAT")}},
    {"Publication",
     {a_text("journal name"),
      an_int(4),
      a_text("JACSAT"),
      {bytes(int32(1), text("fresh author")), bytes(int32(2), text("old author"), text("another"))},
      a_text("volume"),
      an_int(1979),
      a_text("page")}},
    {"ExperimentalInfo",
     {a_real(295),
      a_text("temperature"),
      a_text("pressure"),
      a_real(1.1),
      a_real(1.2),
      a_real(0.04),
      an_int(1),
      an_int(2),
      a_real(0.001),
      a_real(0.005),
      an_enumeration(4),
      a_text("source"),
      {boolean(true), boolean(false)},
      a_text("diffraction details"),
      an_enumeration(2),
      a_text("refinement details"),
      an_enumeration(3)}},
    {"EditorsInfo",
     {{bytes(int32(2003), int32(5), int32(17)), bytes(int32(1999), int32(12), int32(31))},
      {bytes(int32(2004), int32(2), int32(29)), bytes(int32(0), int32(0), int32(0))},
      an_enumeration(3),
      a_real(0.4),
      a_text("previous refcode"),
      an_enumeration(4),
      a_text("comment"),
      an_int(77),
      a_text("memo"),
      a_text("remarks"),
      an_enumeration(2),
      an_enumeration(1)}},
    {"ChemicalInfo",
     {a_text("formula"),
      a_text("name"),
      a_text("bioactivity"),
      a_text("conformer"),
      a_text("source"),
      a_text("peptide sequence"),
      a_text("isomer"),
      {bytes(int32(1), int32(3)), bytes(int32(2), int32(4), int32(5))},
      {bytes(int32(1), text("fresh synonym")), int32(0)}}},
    {"DatabaseCrossReference", {an_int(2), a_text("text")}},
};

std::unique_ptr<Archived> made(const std::string& name) {
  for (const Subject& subject : subjects()) {
    if (subject.name == name) return subject.make();
  }
  return nullptr;
}

TEST(AFailedRead, LeavesTheFieldsBeforeTheEndNewAndTheOthersOld) {
  for (const FieldwiseRecord& record : fieldwise_records) {
    for (std::size_t end = 0; end < record.fields.size(); ++end) {
      std::string old;
      std::string stream;
      std::string expected;
      for (std::size_t index = 0; index < record.fields.size(); ++index) {
        const Field& field = record.fields[index];
        old += field.old;
        if (index < end) stream += field.fresh;
        expected += index < end && !field.stored_last ? field.fresh : field.old;
      }
      const auto object = made(record.name);
      read_stream(*object, old);
      EXPECT_THROW(read_stream(*object, stream), ArchiveError) << record.name << ", field " << end;
      EXPECT_EQ(archived(*object), expected) << record.name << ", field " << end;
    }
  }
}

TEST(AFailedRead, OfATextKeepsTheBytesThatCame) {
  CrystalInfo crystal;
  EXPECT_THROW(read_stream(crystal, bytes(float64(4), float64(1), int32(100), "only this")), ArchiveError);
  EXPECT_EQ(crystal.color, "only this");
}

TEST(AFailedRead, OfATextWithANegativeLengthKeepsTheOldText) {
  for (const int length : {-1, std::numeric_limits<int>::min()}) {
    CrystalInfo crystal;
    crystal.color = "old";
    EXPECT_THROW(read_stream(crystal, bytes(float64(4), float64(1), int32(length), "text")), ArchiveError);
    EXPECT_EQ(crystal.color, "old");
    EXPECT_EQ(crystal.z, 4);
  }
}

// The record's own example with one of its places overwritten.
std::string with_value(const Layout& layout, const std::string& place_name, int value) {
  std::string stream = layout.bytes();
  for (const Place& place : layout.places()) {
    if (place.name == place_name) return stream.replace(place.offset, 4, int32(value));
  }
  throw std::invalid_argument("the layout has no " + place_name);
}

// The record after reading its example with a bad value in one place.
template <class Record>
Record after_bad_value(const Layout& layout, const std::string& place, int value,
                       const std::string& message) {
  Record record;
  EXPECT_EQ(message_of<std::invalid_argument>([&] { read_stream(record, with_value(layout, place, value)); }),
            message);
  return record;
}

TEST(ABadProbe, IsKeptAndTheLaterEnumerationsAreOld) {
  const auto record = after_bad_value<ExperimentalInfo>(experimental_info_layout(), "radiation probe", 5,
                                                        "Invalid ExperimentalInfo::RadiationProbe");
  EXPECT_EQ(record.probe, 5);
  EXPECT_EQ(record.intensity_method, ExperimentalInfo::unknown_method);
  EXPECT_EQ(record.powder, ExperimentalInfo::unknown_study);
  EXPECT_EQ(record.refinement_details, "riding H");
}

TEST(ABadIntensityMethod, IsKeptAndThePowderStudyIsOld) {
  const auto record = after_bad_value<ExperimentalInfo>(experimental_info_layout(), "intensity method", -1,
                                                        "Invalid ExperimentalInfo::IntensityMethod");
  EXPECT_EQ(record.probe, ExperimentalInfo::neutron);
  EXPECT_EQ(record.intensity_method, -1);
  EXPECT_EQ(record.powder, ExperimentalInfo::unknown_study);
}

TEST(ABadPowderStudy, IsKeptAfterAllTheOthers) {
  const auto record = after_bad_value<ExperimentalInfo>(experimental_info_layout(), "powder study", 3,
                                                        "Invalid ExperimentalInfo::PowderStudy");
  EXPECT_EQ(record.probe, ExperimentalInfo::neutron);
  EXPECT_EQ(record.intensity_method, ExperimentalInfo::diffractometer);
  EXPECT_EQ(record.powder, 3);
}

TEST(ABadCategory, LeavesAllFourEnumerationsOld) {
  const auto record =
      after_bad_value<EditorsInfo>(editors_info_layout(), "category", 6, "Invalid EntryCategory conversion");
  EXPECT_EQ(record.category, EditorsInfo::unknown);
  EXPECT_EQ(record.aser_match_flag, EditorsInfo::inapplicable);
  EXPECT_EQ(record.author_correspondence, EditorsInfo::no_correspondence);
  EXPECT_EQ(record.ignored_errors, EditorsInfo::no_errors_ignored);
  EXPECT_EQ(record.remarks, "remarks");
  EXPECT_EQ(record.batch, 77);
}

TEST(ABadMatchFlag, LeavesTheCategoryNewAndTheLaterOnesOld) {
  const auto record = after_bad_value<EditorsInfo>(editors_info_layout(), "aser match flag", 5,
                                                   "Invalid AserMatchFlag conversion");
  EXPECT_EQ(record.category, EditorsInfo::full_structure);
  EXPECT_EQ(record.aser_match_flag, EditorsInfo::inapplicable);
  EXPECT_EQ(record.author_correspondence, EditorsInfo::no_correspondence);
  EXPECT_EQ(record.ignored_errors, EditorsInfo::no_errors_ignored);
}

TEST(ABadClassification, LeavesTheOldOne) {
  ChemicalClassification classification(ChemicalClassification::steroid);
  for (const int value : {0, 12, -1, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(message_of<std::invalid_argument>([&] { read_stream(classification, int32(value)); }),
              "Invalid ChemicalClassification");
    EXPECT_EQ(classification.classifier(), ChemicalClassification::steroid);
  }
}

TEST(ABadClassification, LeavesTheTextsBeforeItNewAndTheSynonymsOld) {
  ChemicalInfo record;
  record.synonyms = {"old"};
  EXPECT_THROW(read_stream(record, with_value(chemical_info_layout(), "classification", 12)),
               std::invalid_argument);
  EXPECT_EQ(record.isomer, "3-beta");
  EXPECT_EQ(record.synonyms, std::vector<std::string>{"old"});
}

TEST(ABadCrossReferenceType, IsKeptWithTheNewText) {
  for (const int value : {0, 7, -1}) {
    const auto reference = after_bad_value<DatabaseCrossReference>(
        cross_reference_layout(), "cross-reference type", value, "Invalid DatabaseCrossReference type");
    EXPECT_EQ(reference.type(), value);
    EXPECT_EQ(reference.text(), "Racemate of [ABCDEF], [GHIJKL01]");
  }
}

TEST(ABadCrossReferenceType, LeavesTheSetWithTheElementsBeforeIt) {
  CrossReferenceInfo info;
  info.insert(DatabaseCrossReference(DatabaseCrossReference::isomer, "old"));
  const std::string stream = bytes(int32(3), int32(6), text("a"), int32(1), text("b"), int32(7), text("c"));
  EXPECT_THROW(read_stream(info, stream), std::invalid_argument);
  EXPECT_EQ(printed(info), "Cross References: type: 1text: b type: 6text: a ");
}

TEST(ACrossReferenceCount, ThatIsNegativeLeavesAnEmptySet) {
  CrossReferenceInfo info;
  info.insert(DatabaseCrossReference(DatabaseCrossReference::isomer, "old"));
  EXPECT_THROW(read_stream(info, int32(-1)), ArchiveError);
  EXPECT_TRUE(info.empty());
}

TEST(ABadDepositionType, IsKeptWithItsOldTextAndTheStreamIsAfterIt) {
  DepositionInfo info;
  read_stream(info, bytes(int32(3), int32(0), text("a"), int32(1), text("b"), int32(2), text("c")));
  const std::string stream = bytes(int32(3), int32(6), text("new"), int32(12), text("never read"));
  const File file = stream_of(stream);
  Archive archive(file.get());
  EXPECT_THROW(info.read(archive), std::invalid_argument);
  EXPECT_EQ(std::ftell(file.get()), 4 + 4 + 4 + 3 + 4);
  EXPECT_EQ(printed(info), "0: 6: new\t1: 12: b\t2: 2: c\t");
}

TEST(ABadDepositionType, OfAPairThatWasNotThereHasAnEmptyText) {
  DepositionInfo info;
  EXPECT_THROW(read_stream(info, bytes(int32(3), int32(6), text("new"), int32(-1))), std::invalid_argument);
  EXPECT_EQ(printed(info), "0: 6: new\t1: -1: \t2: 0: \t");
}

TEST(ABadEntry, HasNewComponentsBeforeTheFailureAPartOfThatOneAndOldOnesAfterIt) {
  const THandle<CrystalMaker> maker(new CrystalMaker);
  CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier("old"), maker);
  const THandle<ExperimentalInfo> experimental(new ExperimentalInfo);
  const THandle<EditorsInfo> editors(new EditorsInfo);
  const THandle<ChemicalInfo> chemical(new ChemicalInfo);
  entry.set_experimental_info(experimental);
  entry.set_editors_info(editors);
  entry.set_chemical_info(chemical);
  const std::string stream = with_value(entry_layout(), "category", 6);
  EXPECT_THROW(read_stream(entry, stream), std::invalid_argument);
  EXPECT_EQ(entry.identifier(), DatabaseEntryIdentifier("ABCDEF01"));
  EXPECT_NE(entry.crystal_maker(), maker);
  EXPECT_EQ(entry.publication()->page, "2345");
  EXPECT_NE(entry.experimental_info(), experimental);
  EXPECT_NE(entry.editors_info(), editors);
  EXPECT_EQ(entry.editors_info()->remarks, "remarks");
  EXPECT_EQ(editors->remarks, "");
  EXPECT_EQ(entry.chemical_info(), chemical);
  EXPECT_TRUE(entry.deposition_info().is_null());
}

}  // namespace
