// The examples of the public headers of the library and its siblings, compiled. header_examples_test.cpp
// holds the headers against them, so that no tool and no hand can spoil one unseen.
#include <chemistry/graph_match.h>
#include <database_entry/database_entry.h>
#include <regex/regex.h>
#include <regex/regex_error.h>
#include <utilities/fields.h>
#include <utilities/test_suite.h>
#include <utilities/vorn_log.h>

#include <iostream>

#pragma GCC diagnostic ignored "-Wunused-result"
#pragma GCC diagnostic ignored "-Wunused-variable"
#pragma GCC diagnostic ignored "-Wunused-function"
#pragma GCC diagnostic ignored "-Wunused-but-set-variable"

// clang-format off
namespace {

// begin database_entry/entries/crystal_structure_database_entry.h
void show(const CrystalStructureDatabaseEntry& entry) {
  entry.print(std::cout);
  const THandle<Publication> publication = entry.publication();
  if (!publication.is_null()) std::cout << publication->year;
}
// end database_entry/entries/crystal_structure_database_entry.h

template <class Component>
THandle<Component> load(const char*) {
  return {};
}
// begin database_entry/entries/crystal_structure_database_entry_data_source.h
class Folder : public CrystalStructureDatabaseEntryDataSource {
 public:
  THandle<Publication> publication() const override { return load<Publication>("publication"); }
};
// end database_entry/entries/crystal_structure_database_entry_data_source.h

[[maybe_unused]] void checks_entry_checks() {
  const CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier("ABCDEF"), THandle<CrystalMaker>::make());
  // begin database_entry/checks/entry_checks.h
  test_database_entry_summary("run1", entry, "ABCDEF", 10.0, 4);
  test_database_entry_handles("run1", entry);
  for (const std::string& message : TestSuite::failures()) std::cerr << message;
  // end database_entry/checks/entry_checks.h
}

[[maybe_unused]] void entries_chemical_connectivity_database_entry() {
  // begin database_entry/entries/chemical_connectivity_database_entry.h
  ChemicalConnectivityDatabaseEntry entry;
  entry.set_identifier(DatabaseEntryIdentifier("12.5 benzene.qdx"));
  // entry.identifier is "12.5", entry.name is "benzene"
  // end database_entry/entries/chemical_connectivity_database_entry.h
}

[[maybe_unused]] void entries_crystal_structure_deferred_database_entry() {
  // begin database_entry/entries/crystal_structure_deferred_database_entry.h
  const THandle<CrystalStructureDatabaseEntryDataSource> source(new Folder);
  const CrystalStructureDeferredDatabaseEntry entry(source);
  entry.publication();    // asks the source
  entry.publication();    // does not
  // end database_entry/entries/crystal_structure_deferred_database_entry.h
}

[[maybe_unused]] void entries_crystal_structure_immediate_database_entry() {
  Archive archive(stdout);
  const auto maker = THandle<CrystalMaker>::make();
  const auto publication = THandle<Publication>::make();
  // begin database_entry/entries/crystal_structure_immediate_database_entry.h
  CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier("ABCDEF01"), maker);
  entry.set_publication(publication);
  entry.write(archive);       // needs all ten archived components
  entry.read(archive);        // lets the old components go
  // end database_entry/entries/crystal_structure_immediate_database_entry.h
}

[[maybe_unused]] void entries_components() {
  const CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier("ABCDEF"), THandle<CrystalMaker>::make());
  // begin database_entry/entries/components.h
  for_each_component([&](auto component) {
    if (component.get(entry).is_null()) std::cout << component.label << " is missing\n";
  });
  // end database_entry/entries/components.h
}

[[maybe_unused]] void foundations_archive_encodings() {
  Archive archive(stdout);
  const std::string name;
  const std::vector<std::string> synonyms;
  const auto publication = THandle<Publication>::make();
  // begin database_entry/foundations/archive_encodings.h
  archive << name;           // std::string
  archive << synonyms;       // std::vector<std::string>
  archive << publication;    // THandle<Publication>
  // end database_entry/foundations/archive_encodings.h
}

[[maybe_unused]] void foundations_enum_text_mapping() {
  // begin database_entry/foundations/enum_text_mapping.h
  const auto probes = ExperimentalInfo::radiation_probe_text();
  probes->text(ExperimentalInfo::neutron);   // "neutron"
  probes->value("x-ray");                    // ExperimentalInfo::x_ray
  // end database_entry/foundations/enum_text_mapping.h
}

[[maybe_unused]] void records_chemical_classification() {
  // begin database_entry/records/chemical_classification.h
  ChemicalClassification steroid(ChemicalClassification::steroid);
  steroid.str();                                                   // "Steroid"
  // end database_entry/records/chemical_classification.h
}

[[maybe_unused]] void records_chemical_info() {
  // begin database_entry/records/chemical_info.h
  ChemicalInfo chemical;
  chemical.formula = "C10 H8";
  chemical.synonyms = {"naphthalin", "tar camphor"};
  // end database_entry/records/chemical_info.h
}

[[maybe_unused]] void records_crystal_info() {
  // begin database_entry/records/crystal_info.h
  CrystalInfo crystal;
  crystal.z = 4;                 // formula units in the unit cell
  crystal.z_prime = 0.5;         // formula units in the asymmetric unit
  // end database_entry/records/crystal_info.h
}

[[maybe_unused]] void records_double_comparator() {
  // begin database_entry/records/double_comparator.h
  DoubleComparator less;            // less_than with a tolerance of 1e-7
  less(300.0, 300.00000005);        // false: they differ by no more than the tolerance
  less.equal(300.0, 300.00000005);  // true
  // end database_entry/records/double_comparator.h
}

[[maybe_unused]] void records_editors_info() {
  // begin database_entry/records/editors_info.h
  EditorsInfo editors;
  editors.accession_date = Date(2003, 5, 17);
  editors.category = EditorsInfo::full_structure;
  editors.previous_refcode = "ABCDEF";
  // end database_entry/records/editors_info.h
}

[[maybe_unused]] void records_experimental_info() {
  // begin database_entry/records/experimental_info.h
  ExperimentalInfo experiment;
  experiment.temperature = 295.0;                        // kelvin
  experiment.probe = ExperimentalInfo::x_ray;
  experiment.powder = ExperimentalInfo::single_crystal_study;
  // end database_entry/records/experimental_info.h
}

[[maybe_unused]] void records_journal() {
  // begin database_entry/records/journal.h
  Journal journal(4);
  journal.name();             // "J.Am.Chem.Soc."
  journal.state();            // Journal::current
  const Journal other = Journal::from("Struct.Lett.", 0, "STRLE9");    // one that the list does not have
  // end database_entry/records/journal.h
}

[[maybe_unused]] void records_publication() {
  // begin database_entry/records/publication.h
  Publication publication({"A.B.Smith", "C.Jones"}, Journal(4), "101", 1979, "2345");
  publication.authors_comma_delimited();    // "A.B.Smith, C.Jones"
  publication.print(std::cout);             // A.B.Smith, C.Jones, J.Am.Chem.Soc., 101, 2345, 1979
  // end database_entry/records/publication.h
}

[[maybe_unused]] void records_published_geometry() {
  const THandle<PublishedBond> bond;
  // begin database_entry/records/published_geometry.h
  THandle<std::vector<THandle<PublishedBond>>> bonds(new std::vector<THandle<PublishedBond>>);
  PublishedGeometry geometry(bonds, false);
  bonds->push_back(bond);                    // seen by the geometry: the list is shared, not copied
  // end database_entry/records/published_geometry.h
}

[[maybe_unused]] void records_range() {
  // begin database_entry/records/range.h
  Range<double, DoubleComparator> sigma(0.001, RangeLimit::inclusive, 0.005, RangeLimit::inclusive,
                                        DoubleComparator());
  // end database_entry/records/range.h
}

[[maybe_unused]] void references_cross_reference_info() {
  // begin database_entry/references/cross_reference_info.h
  CrossReferenceInfo info;
  info.insert(DatabaseCrossReference(DatabaseCrossReference::isomer, "Isomer of [ABCDEF]"));
  for (const DatabaseCrossReference& reference : info) reference.print(std::cout);

  std::vector<DatabaseEntryIdentifier> related;
  info.cross_related_identifiers(related);
  // end database_entry/references/cross_reference_info.h
}

[[maybe_unused]] void references_database_cross_reference() {
  // begin database_entry/references/database_cross_reference.h
  DatabaseCrossReference reference(DatabaseCrossReference::racemate, "Racemate of",
                                   DatabaseEntryIdentifier("ABCDEF01"));
  reference.text();             // "Racemate of [ABCDEF01]"

  std::vector<DatabaseEntryIdentifier> related;
  reference.identifiers(related);   // appends ABCDEF01
  // end database_entry/references/database_cross_reference.h
}

[[maybe_unused]] void references_deposition_info() {
  // begin database_entry/references/deposition_info.h
  DepositionInfo info;
  info.set_text(DepositionInfo::vorn, " VORN 123456 ");
  info.text(DepositionInfo::vorn);                       // "VORN 123456"

  std::vector<std::string> numbers;
  info.deposition_numbers(DepositionInfo::vorn, numbers);   // {"123456"}
  // end database_entry/references/deposition_info.h
}

[[maybe_unused]] void references_regex_grep() {
  struct CountMatches {
    void operator()(const RegexResults&) {}
  };
  const Regex expression("a");
  const std::string text;
  // begin database_entry/references/regex_grep.h
  const auto collector = regex_grep(expression, text, CountMatches(), 0);
  // end database_entry/references/regex_grep.h
}

[[maybe_unused]] void chemistry_graph_match() {
  const THandle<Atom> crystal_atom;
  const THandle<DiagramAtom> diagram_atom;
  // begin siblings/chemistry/graph_match.h
  GraphMatch<THandle<Atom>, THandle<Bond>, THandle<DiagramAtom>, THandle<DiagramBond>> match;
  match.atoms.emplace_back(crystal_atom, diagram_atom);
  // end siblings/chemistry/graph_match.h
}

[[maybe_unused]] void regex_regex() {
  // begin siblings/regex/regex.h
  static const Regex number("VORN\\s(\\d+)");
  RegexResults results;
  if (number.search("deposited as VORN 123456", results, 0)) {
    std::string digits = results.match(1);  // "123456"
  }
  // end siblings/regex/regex.h
}

[[maybe_unused]] void regex_regex_error() {
  // begin siblings/regex/regex_error.h
  try {
    Regex("[A-Z");
  } catch (const RegexError& error) {
    error.offset();  // 0
    error.what();    // "Bad regular expression at offset 0: the class has no closing ]"
  }
  // end siblings/regex/regex_error.h
}

[[maybe_unused]] void regex_regex_results() {
  // begin siblings/regex/regex_results.h
  RegexResults results;
  if (Regex("(\\d+)/(\\d+)").search("no. 12/34", results, 0)) {
    results.match(0).str();           // "12/34", the whole match
    results.match(2).str();           // "34", the second group
    results.match(2).begin_offset();  // 7, in the searched text
  }
  // end siblings/regex/regex_results.h
}

[[maybe_unused]] void symmetry_crystal_symmetry_operator() {
  // begin siblings/symmetry/crystal_symmetry_operator.h
  const CrystalSymmetryOperator screw("-x,1/2+y,1/2-z");
  screw.apply({0.1, 0.2, 0.3});    // {-0.1, 0.7, 0.2}
  // end siblings/symmetry/crystal_symmetry_operator.h
}

[[maybe_unused]] void utilities_archive() {
  FILE* const file = stdout;
  // begin siblings/utilities/archive.h
  Archive archive(file);
  archive << 4 << 0.5 << true;
  archive.flush();               // a full disk is seen here
  // end siblings/utilities/archive.h
}

[[maybe_unused]] void utilities_date() {
  // begin siblings/utilities/date.h
  Date accession(2003, 5, 17);
  accession.print(std::cout);    // 2003-05-17
  // end siblings/utilities/date.h
}

// begin siblings/utilities/fields.h
class Point {
 public:
  double x = 0.0;
  double y = 0.0;

  // In archive order.
  static constexpr auto fields() { return std::tuple{Field{"x", &Point::x}, Field{"y", &Point::y}}; }
  static constexpr bool archived_by_fields = true;
};

// end siblings/utilities/fields.h
[[maybe_unused]] void utilities_fields() {
  Point point;
  // begin siblings/utilities/fields.h
  for_each_field(point, [](const char* name, auto& value) { std::cout << name << " = " << value << '\n';
  });
  // end siblings/utilities/fields.h
}

[[maybe_unused]] void utilities_t_handle() {
  // begin siblings/utilities/t_handle.h
  THandle<Publication> publication(new Publication);
  THandle<Publication> same = publication;      // both keep it alive
  publication = THandle<Publication>::make();   // a new default one, in half the time of THandle(new ...)
  if (!same.is_null()) same->print(std::cout);
  // end siblings/utilities/t_handle.h
}

[[maybe_unused]] void utilities_test_suite() {
  const std::string expected;
  const std::string actual;
  // begin siblings/utilities/test_suite.h
  TestSuite::test_equality("run1::crystal_maker()", expected, actual);
  for (const std::string& message : TestSuite::failures()) std::cerr << message;
  // end siblings/utilities/test_suite.h
}

[[maybe_unused]] void utilities_vorn_log() {
  // begin siblings/utilities/vorn_log.h
  VORNLog::level_ = 3;
  if (VORNLog::active(3)) {
    VORNLog::start_debug_line(3) << "released";
    VORNLog::end_debug_line();
  }
  // end siblings/utilities/vorn_log.h
}

}  // namespace
