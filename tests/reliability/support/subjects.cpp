#include "subjects.h"

#include <database_entry/database_entry.h>

#include <stdexcept>
#include <type_traits>

namespace {

template <class T>
class ArchivedValue : public Archived {
 public:
  template <class... Arguments>
  explicit ArchivedValue(const Arguments&... arguments) : value_(arguments...) {}

  void read(Archive& archive) override { value_.read(archive); }
  void write(Archive& archive) const override { value_.write(archive); }
  void print(std::ostream& os) const override {
    if constexpr (requires { value_.print(os); }) value_.print(os);
  }

 private:
  T value_;
};

template <class T>
Subject subject(const char* name, const Layout& layout) {
  return {name, layout, [] { return std::make_unique<ArchivedValue<T>>(); }};
}

std::unique_ptr<Archived> empty_entry() {
  return std::make_unique<ArchivedValue<CrystalStructureImmediateDatabaseEntry>>(
      DatabaseEntryIdentifier(), THandle<CrystalMaker>(new CrystalMaker));
}

std::string problem_with_object(Archived& object, const Subject& subject, const std::string& stream) {
  if (reads_whole(object, stream)) {
    const std::string once = archived(object);
    const auto back = subject.make();
    if (!reads_whole(*back, once)) return "what was read and written cannot be read again";
    if (archived(*back) != once) return "what was read and written reads back as something else";
  }
  const std::string& whole = subject.layout.bytes();
  if (!reads_whole(object, whole)) return "a valid stream can no longer be read into the object";
  if (archived(object) != whole) return "a valid stream read into the object is not what it writes";
  return {};
}

}  // namespace

std::vector<Subject> subjects() {
  return {
      subject<DatabaseEntryIdentifier>("Identifier", identifier_layout()),
      subject<Date>("Date", date_layout()),
      subject<CrystalSymmetryOperator>("CrystalSymmetryOperator", symmetry_operator_layout()),
      subject<Cell>("Cell", cell_layout()),
      subject<CrystalMaker>("CrystalMaker", crystal_maker_layout()),
      {"Journal", journal_layout(), [] { return std::make_unique<ArchivedValue<Journal>>(1); }},
      subject<Publication>("Publication", publication_layout()),
      subject<Range<double, DoubleComparator>>("Range", range_layout()),
      subject<ExperimentalInfo>("ExperimentalInfo", experimental_info_layout()),
      subject<EditorsInfo>("EditorsInfo", editors_info_layout()),
      subject<ChemicalClassification>("ChemicalClassification", chemical_classification_layout()),
      subject<ChemicalInfo>("ChemicalInfo", chemical_info_layout()),
      subject<CrystalInfo>("CrystalInfo", crystal_info_layout()),
      subject<ConnectivityInfo>("ConnectivityInfo", connectivity_info_layout()),
      subject<DatabaseCrossReference>("DatabaseCrossReference", cross_reference_layout()),
      subject<CrossReferenceInfo>("CrossReferenceInfo", cross_reference_info_layout()),
      subject<DepositionInfo>("DepositionInfo", deposition_info_layout()),
      entry_subject(),
  };
}

Subject entry_subject() {
  return {"Entry", entry_layout(), empty_entry};
}

bool reads_whole(Archived& object, const std::string& stream) {
  try {
    read_stream(object, stream);
    return true;
  } catch (const ArchiveError&) {
    return false;
  } catch (const std::invalid_argument&) {
    return false;
  }
}

std::string problem_with(const Subject& subject, const std::string& stream) {
  const auto object = subject.make();
  try {
    return problem_with_object(*object, subject, stream);
  } catch (const std::exception& error) {
    return std::string("an exception that is not documented: ") + error.what();
  }
}
