// One record of each kind with something in every field; its bytes are in stored_samples.h.
#pragma once

#include <database_entry/records/chemical_info.h>
#include <database_entry/records/crystal_info.h>
#include <database_entry/records/editors_info.h>
#include <database_entry/records/experimental_info.h>
#include <database_entry/records/publication.h>

#include <climits>
#include <string>
#include <vector>

#include "support/stored_samples.h"

using SigmaRange = Range<double, DoubleComparator>;

// filled(): the record; fresh(): another one to read into; stored(): the layout of the bytes of filled().
template <class Record>
struct Sample;

template <>
struct Sample<ChemicalClassification> {
  static ChemicalClassification fresh() { return {}; }
  static ChemicalClassification filled() {
    return ChemicalClassification(ChemicalClassification::high_polymer);
  }
  static Layout stored() { return chemical_classification_layout(); }
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
  static Layout stored() { return chemical_info_layout(); }
};

template <>
struct Sample<CrystalInfo> {
  static CrystalInfo fresh() { return {}; }
  static CrystalInfo filled() {
    return CrystalInfo(4.0, 0.5, "red", "needle", "ABCDEF", "371 K", "twinned", "at 90 K", "form II", "light",
                       "water", "C7 over two sites", "reduced cell");
  }
  static Layout stored() { return crystal_info_layout(); }
};

template <>
struct Sample<SigmaRange> {
  static SigmaRange fresh() { return {}; }
  static SigmaRange filled() {
    return SigmaRange(0.001, RangeLimit::exclusive, 0.005, RangeLimit::unbounded, DoubleComparator());
  }
  static Layout stored() { return range_layout(); }
};

template <>
struct Sample<ExperimentalInfo> {
  static ExperimentalInfo fresh() { return {}; }
  static ExperimentalInfo filled() {
    return ExperimentalInfo(295.5, "room", "1 GPa", 1.25, 1.5, 0.045, Sample<SigmaRange>::filled(),
                            ExperimentalInfo::neutron, "reactor", true, "weak",
                            ExperimentalInfo::powder_study, "riding H", ExperimentalInfo::diffractometer);
  }
  static Layout stored() { return experimental_info_layout(); }
};

template <>
struct Sample<EditorsInfo> {
  static EditorsInfo fresh() { return {}; }
  static EditorsInfo filled() {
    return EditorsInfo(Date(2003, 5, 17), Date(2011, 12, 31), EditorsInfo::full_structure, 0.4, "OLDREF",
                       EditorsInfo::perfect_match, "as published", 77, "memo", "remarks",
                       EditorsInfo::received_correction, EditorsInfo::valency_errors_ignored);
  }
  static Layout stored() { return editors_info_layout(); }
};

template <>
struct Sample<Journal> {
  static Journal fresh() { return Journal(1); }
  static Journal filled() { return Journal(4); }
  static Layout stored() { return journal_layout(); }
};

template <>
struct Sample<Publication> {
  static Publication fresh() { return {}; }
  static Publication filled() {
    return Publication({"A.B.Smith", "B.de la Second-Author", ""}, Journal(4), "101", 1979, "2345");
  }
  static Layout stored() { return publication_layout(); }
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
