// One record of each kind with something in every field, and its bytes put together by hand.
#pragma once

#include <database_entry/records/chemical_info.h>
#include <database_entry/records/crystal_info.h>
#include <database_entry/records/editors_info.h>
#include <database_entry/records/experimental_info.h>
#include <database_entry/records/publication.h>

#include <climits>
#include <string>
#include <vector>

#include "support/bytes.h"

using SigmaRange = Range<double, DoubleComparator>;

// A piece of a record's bytes. `counted` ones begin with a count or a length.
struct StoredField {
  StoredField(std::string all_bytes, bool is_counted = false) : bytes(all_bytes), counted(is_counted) {}
  std::string bytes;
  bool counted;
};

inline StoredField counted(const std::string& bytes) {
  return {bytes, true};
}

using StoredFields = std::vector<StoredField>;

inline std::string joined(const StoredFields& fields) {
  std::string all;
  for (const StoredField& field : fields) all += field.bytes;
  return all;
}

// filled(): the record; fresh(): another one to read into; stored(): the bytes of filled().
template <class Record>
struct Sample;

template <>
struct Sample<ChemicalClassification> {
  static ChemicalClassification fresh() { return {}; }
  static ChemicalClassification filled() {
    return ChemicalClassification(ChemicalClassification::high_polymer);
  }
  static StoredFields stored() { return {int32(11)}; }
};

template <>
struct Sample<ChemicalInfo> {
  static ChemicalInfo fresh() { return {}; }
  static ChemicalInfo filled() {
    return ChemicalInfo("C27 H46 O", "cholesterol", "lipid", "chair", "gallstones", "Gly-Ala", "3-beta",
                        {ChemicalClassification(ChemicalClassification::steroid),
                         ChemicalClassification(ChemicalClassification::carbohydrate)},
                        {"cholesterin", "", "cholest-5-en-3-ol"});
  }
  static StoredFields stored() {
    return {counted(text("C27 H46 O")),
            counted(text("cholesterol")),
            counted(text("lipid")),
            counted(text("chair")),
            counted(text("gallstones")),
            counted(text("Gly-Ala")),
            counted(text("3-beta")),
            counted(int32(2)),
            int32(6),
            int32(1),
            counted(int32(3)),
            counted(text("cholesterin")),
            counted(text("")),
            counted(text("cholest-5-en-3-ol"))};
  }
};

template <>
struct Sample<CrystalInfo> {
  static CrystalInfo fresh() { return {}; }
  static CrystalInfo filled() {
    return CrystalInfo(4.0, 0.5, "red", "needle", "ABCDEF", "371 K", "twinned", "at 90 K", "form II", "light",
                       "water", "C7 over two sites", "reduced cell");
  }
  static StoredFields stored() {
    return {float64(4.0),
            float64(0.5),
            counted(text("red")),
            counted(text("needle")),
            counted(text("ABCDEF")),
            counted(text("371 K")),
            counted(text("twinned")),
            counted(text("at 90 K")),
            counted(text("form II")),
            counted(text("light")),
            counted(text("water")),
            counted(text("C7 over two sites")),
            counted(text("reduced cell"))};
  }
};

template <>
struct Sample<SigmaRange> {
  static SigmaRange fresh() { return {}; }
  static SigmaRange filled() {
    return SigmaRange(0.001, RangeLimit::exclusive, 0.005, RangeLimit::unbounded, DoubleComparator());
  }
  static StoredFields stored() { return {int32(1), int32(2), float64(0.001), float64(0.005)}; }
};

template <>
struct Sample<ExperimentalInfo> {
  static ExperimentalInfo fresh() { return {}; }
  static ExperimentalInfo filled() {
    return ExperimentalInfo(295.5, "room", "1 GPa", 1.25, 1.5, 0.045, Sample<SigmaRange>::filled(),
                            ExperimentalInfo::neutron, "reactor", true, "weak",
                            ExperimentalInfo::powder_study, "riding H", ExperimentalInfo::diffractometer);
  }
  static StoredFields stored() {
    return {float64(295.5),
            counted(text("room")),
            counted(text("1 GPa")),
            float64(1.25),
            float64(1.5),
            float64(0.045),
            joined(Sample<SigmaRange>::stored()),
            int32(2),
            counted(text("reactor")),
            boolean(true),
            counted(text("weak")),
            int32(2),
            counted(text("riding H")),
            int32(3)};
  }
};

template <>
struct Sample<EditorsInfo> {
  static EditorsInfo fresh() { return {}; }
  static EditorsInfo filled() {
    return EditorsInfo(Date(2003, 5, 17), Date(2011, 12, 31), EditorsInfo::full_structure, 0.4, "OLDREF",
                       EditorsInfo::perfect_match, "as published", 77, "memo", "remarks",
                       EditorsInfo::received_correction, EditorsInfo::valency_errors_ignored);
  }
  static StoredFields stored() {
    return {bytes(int32(2003), int32(5), int32(17)),
            bytes(int32(2011), int32(12), int32(31)),
            int32(3),
            float64(0.4),
            counted(text("OLDREF")),
            int32(3),
            counted(text("as published")),
            int32(77),
            counted(text("memo")),
            counted(text("remarks")),
            int32(2),
            int32(1)};
  }
};

template <>
struct Sample<Journal> {
  static Journal fresh() { return Journal(1); }
  static Journal filled() { return Journal(4); }
  static StoredFields stored() {
    return {counted(text("J.Am.Chem.Soc.")), int32(4), counted(text("JACSAT"))};
  }
};

template <>
struct Sample<Publication> {
  static Publication fresh() { return {}; }
  static Publication filled() {
    return Publication({"A.B.Smith", "C.Jones"}, Journal(4), "101", 1979, "2345");
  }
  static StoredFields stored() {
    StoredFields fields = Sample<Journal>::stored();
    fields.insert(fields.end(), {counted(int32(2)), counted(text("A.B.Smith")), counted(text("C.Jones")),
                                 counted(text("101")), int32(1979), counted(text("2345"))});
    return fields;
  }
};

// The bytes that a record writes.
template <class Record>
std::string bytes_of(const Record& record) {
  return written([&record](Archive& archive) { record.write(archive); });
}

// Reads `contents` into `record`. Gives the message of the exception of type E that ended it.
template <class E, class Record>
std::string failed_read(Record& record, const std::string& contents) {
  return message_of<E>([&] { read_from(contents, [&record](Archive& archive) { record.read(archive); }); });
}
