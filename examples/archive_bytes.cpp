// Prints the worked bytes of docs/archive_format.md, each under its name.
#include <cstdio>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>

#include "sample_entry.h"

namespace {

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};

// Sixteen bytes a line: offset, bytes, and what they are as text.
void print_bytes(FILE* file) {
  std::rewind(file);
  unsigned char row[16];
  std::size_t offset = 0;
  for (std::size_t size = std::fread(row, 1, sizeof row, file); size > 0;
       size = std::fread(row, 1, sizeof row, file)) {
    std::cout << std::hex << std::setfill('0') << std::setw(4) << offset << ' ';
    std::string text;
    for (std::size_t at = 0; at < size; ++at) {
      std::cout << ' ' << std::setw(2) << static_cast<unsigned>(row[at]);
      text += row[at] >= 0x20 && row[at] < 0x7F ? static_cast<char>(row[at]) : '.';
    }
    std::cout << std::dec << std::string(3 * (sizeof row - size) + 2, ' ') << text << '\n';
    offset += size;
  }
}

// What `write` puts on an archive.
template <class Write>
void show(const char* name, const Write& write) {
  std::cout << "// begin " << name << '\n';
  const std::unique_ptr<FILE, CloseFile> file(std::tmpfile());
  if (file == nullptr) throw std::runtime_error("no temporary file could be made");
  Archive archive(file.get());
  write(archive);
  print_bytes(file.get());
  std::cout << "// end " << name << "\n\n";
}

template <class Record>
void show_record(const char* name, const Record& record) {
  show(name, [&record](Archive& archive) { record.write(archive); });
}

void show_all() {
  show("scalars", [](Archive& archive) { archive << 1418 << -1 << true << 0.5; });
  show("text", [](Archive& archive) { archive << std::string("RACEMATE"); });
  show("texts", [](Archive& archive) { archive << std::vector<std::string>{"ab", ""}; });
  show_record("identifier", DatabaseEntryIdentifier("ABCDEF01"));
  show_record("date", Date(2003, 5, 17));

  const CrystalStructureImmediateDatabaseEntry entry = sample_entry();
  show_record("operator", CrystalSymmetryOperator("-x,1/2+y,1/2-z"));
  show_record("cell",
              Cell(10.0, 11.0, 12.0, 90.0, 101.5, 90.0,
                   THandle<std::vector<CrystalSymmetryOperator>>(new std::vector<CrystalSymmetryOperator>)));
  show_record("atom", *entry.crystal_maker()->atoms().at(0));
  show_record("journal", Journal(4));
  show_record("publication", *entry.publication());
  show_record("experimental",
              ExperimentalInfo(295.0, "295 K", "101 kPa", 1.25, 1.26, 0.045,
                               Range<double, DoubleComparator>(0.001, RangeLimit::inclusive, 0.005,
                                                               RangeLimit::exclusive, DoubleComparator()),
                               ExperimentalInfo::neutron, "reactor", true, "Laue",
                               ExperimentalInfo::single_crystal_study, "H atoms free",
                               ExperimentalInfo::diffractometer));
  show_record("range", Range<double, DoubleComparator>(0.001, RangeLimit::inclusive, 0.005,
                                                       RangeLimit::exclusive, DoubleComparator()));
  show_record("editors", EditorsInfo(Date(2003, 5, 17), Date(2011, 12, 31), EditorsInfo::full_structure, 0.4,
                                     "ABCDEF", EditorsInfo::partial_match, "as drawn", 9, "checked", "none",
                                     EditorsInfo::referred_problem, EditorsInfo::all_errors_ignored));
  ChemicalInfo chemical = *entry.chemical_info();
  chemical.classifiers = {ChemicalClassification(ChemicalClassification::alkaloid)};
  show_record("chemical", chemical);
  show_record("crystal", *entry.crystal_info());

  const THandle<ConnectivityAtom> carbon(new ConnectivityAtom{"C", "C1", 0, 2});
  const THandle<ConnectivityAtom> oxygen(new ConnectivityAtom{"O", "O1", 0, 0});
  const THandle<Connectivity> connectivity(new Connectivity);
  connectivity->atoms = {carbon, oxygen};
  connectivity->bonds = {
      THandle<ConnectivityBond>(new ConnectivityBond{carbon, oxygen, BondType::double_bond})};
  show_record("connectivity", ConnectivityInfo(connectivity));

  show_record("cross_references", *entry.cross_reference_info());
  show_record("depositions", *entry.deposition_info());
}

}  // namespace

int main() {
  try {
    show_all();
  } catch (const std::exception& error) {
    std::cerr << "archive_bytes: " << error.what() << '\n';
    return 1;
  }
}
