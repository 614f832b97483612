// What find finds, what perceive and check say, and what picture draws.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tools/files/file_kind.h"
#include "tools/program.h"
#include "tools/temporary_folder.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;

Outcome run(const std::vector<std::string>& arguments) {
  return Program(arguments).run();
}

// Three invented structures: a salt, a salt with a wrong year, a molecule.
constexpr const char* structures = R"(data_salt
_chemical_formula_sum 'Na Cl'
_journal_year 1960
_cell_length_a 5.64
_cell_length_b 5.64
_cell_length_c 5.64
_cell_angle_alpha 90
_cell_angle_beta 90
_cell_angle_gamma 90
_space_group_name_H-M_alt 'F m -3 m'
loop_
_atom_site_label
_atom_site_fract_x
_atom_site_fract_y
_atom_site_fract_z
Na1 0 0 0
Cl1 0.5 0.5 0.5
data_early
_chemical_formula_sum 'K Br'
_journal_year 1066
_cell_length_a 6.6
_cell_length_b 6.6
_cell_length_c 6.6
_cell_angle_alpha 90
_cell_angle_beta 90
_cell_angle_gamma 90
_space_group_name_H-M_alt 'F m -3 m'
loop_
_atom_site_label
_atom_site_fract_x
_atom_site_fract_y
_atom_site_fract_z
K1 0 0 0
Br1 0.5 0.5 0.5
data_molecule
_chemical_formula_sum 'C O2'
_journal_year 1980
_cell_length_a 8
_cell_length_b 9
_cell_length_c 10
_cell_angle_alpha 90
_cell_angle_beta 90
_cell_angle_gamma 90
_space_group_name_H-M_alt 'P 1'
loop_
_atom_site_label
_atom_site_fract_x
_atom_site_fract_y
_atom_site_fract_z
C1 0.5 0.5 0.5
O1 0.355 0.5 0.5
O2 0.645 0.5 0.5
)";

// The same in an archive and in a store.
class Collections : public testing::Test {
 protected:
  Collections() {
    const std::string cif = folder.with("three.cif", structures);
    EXPECT_EQ(run({"import", cif, "-o", archive}).code, 0);
    EXPECT_EQ(run({"init", store}).code, 0);
    EXPECT_EQ(run({"import", cif, "--into", store}).code, 0);
  }

  TemporaryFolder folder;
  std::string archive = folder.file("three.dbe");
  std::string store = folder.file("three.db");
};

struct FindCase {
  std::vector<std::string> question;
  std::string out;
};

TEST_F(Collections, AreSearchedAlike) {
  const std::vector<FindCase> cases = {
      {{"Cl,year=1900..1990", "-c", "identifier"}, "salt\n"},
      {{"", "-c", "identifier"}, "early\nmolecule\nsalt\n"},
      {{"", "-c", "identifier,year", "--sort", "year"}, "early\t1066\nsalt\t1960\nmolecule\t1980\n"},
      {{"", "-c", "identifier", "--sort", "year", "--limit", "1"}, "early\n"},
      {{"", "-c", "identifier", "--after", "early", "--limit", "1"}, "molecule\n"},
      {{"--filter", "elements HAS \"C\"", "-c", "formula"}, "C O2\n"},
      {{"!C", "--count"}, "2\n"},
      {{"--cell", "5.65,5.65,5.65,90,90,90", "--centring", "F", "-c", "identifier"}, "salt\n"},
      {{"--cell", "3.99,3.99,3.99,60,60,60", "-c", "identifier"}, "salt\n"},
      {{"Xe"}, ""},
  };
  for (const std::string& collection : {archive, store}) {
    for (const FindCase& one : cases) {
      std::vector<std::string> arguments = {"find", collection};
      for (const std::string& argument : one.question)
        if (!argument.empty()) arguments.push_back(argument);
      const Outcome result = run(arguments);
      EXPECT_EQ(result.code, 0) << result.messages;
      EXPECT_EQ(result.out, one.out) << testing::PrintToString(one.question);
    }
  }
}

TEST_F(Collections, NameTheColumnOfAMistakeInAQuery) {
  const Outcome result = run({"find", store, "Ti,yaer=3"});
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.messages, HasSubstr("column 4: there is no property 'yaer'; did you mean 'year'?\n"
                                         "dbentry:   Ti,yaer=3\n"
                                         "dbentry:      ^\n"));
  EXPECT_EQ(run({"find", store, "--cell", "1,2,3"}).messages,
            "dbentry: --cell 1,2,3: six numbers are wanted: a,b,c,alpha,beta,gamma\n");
  EXPECT_EQ(run({"find", store, "--filter", "elements HAS"}).code, 2);
}

TEST_F(Collections, ArePerceivedWithAReport) {
  const std::string before = contents_of_file(archive);
  EXPECT_EQ(run({"perceive", archive, "molecule", "--dry-run"}).code, 0);
  EXPECT_EQ(contents_of_file(archive), before);
  const Outcome result = run({"perceive", archive, "molecule"});
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, HasSubstr("molecule\tconnectivity_info"));
  EXPECT_THAT(run({"show", archive, "molecule"}).out, HasSubstr("atoms: 3, bonds: 2"));
  EXPECT_EQ(run({"perceive", store}).code, 0);
  EXPECT_EQ(run({"verify", store}).code, 0);
}

TEST_F(Collections, AreCheckedWithOneWhereSomethingWasFound) {
  const Outcome result = run({"check", archive, "early"});
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.out, HasSubstr("early\t62\t"));
  EXPECT_THAT(result.messages, EndsWith("dbentry: 1 finding in 1 entry\n"));
  EXPECT_EQ(run({"check", store, "salt"}).code, 0);
}

TEST_F(Collections, AreNotDrawnInASizeThatIsNone) {
  const Outcome result = run({"picture", archive, "salt", "-o", folder.file("a.svg"), "--width", "5"});
  EXPECT_EQ(result.code, 2);
  EXPECT_THAT(result.messages, HasSubstr("--width and --height are from 16 to 20,000, not 5"));
}

TEST_F(Collections, AreNotDrawnWhereThereIsNoDiagramAndTheEntryIsNamed) {
  const Outcome result = run({"picture", archive, "salt", "--diagram", "-o", folder.file("a.svg")});
  EXPECT_EQ(result.code, 1);
  EXPECT_THAT(result.messages, HasSubstr(": salt: There is no diagram: "));
}

TEST_F(Collections, AreDrawn) {
  const std::vector<std::pair<std::string, FileKind>> pictures = {
      {"a.svg", FileKind::svg}, {"a.png", FileKind::png}, {"a.pdf", FileKind::pdf}};
  for (const auto& [name, kind] : pictures) {
    const Outcome result = run({"picture", archive, "salt", "--cell", "-o", folder.file(name)});
    EXPECT_EQ(result.code, 0) << result.messages;
    EXPECT_EQ(kind_of_file(folder.file(name)), kind);
  }
  EXPECT_EQ(run({"picture", store, "molecule", "--diagram", "-o", folder.file("m.svg")}).out,
            "1 entry, 3 atoms and 2 bonds drawn\n");
  EXPECT_EQ(run({"picture", store, "--sheet", "-o", folder.file("sheet.svg")}).code, 0);
  EXPECT_EQ(run({"picture", store, "molecule", "-o", folder.file("m.jpg")}).code, 2);
  EXPECT_EQ(run({"picture", archive, "salt", "-o", archive}).code, 2);
}

}  // namespace
