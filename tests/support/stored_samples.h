// The bytes of one full example of everything that an archive holds, put together by hand: every text filled
// except an element of a list, every list with elements. sample_records.h has the records themselves.
#pragma once

#include "support/layout.h"

inline Layout date_layout(int year, int month, int day) {
  return Layout().integer(year).integer(month).integer(day);
}

inline Layout cross_reference_layout(int type, const std::string& text) {
  return Layout().enumeration("cross-reference type", type).text("cross-reference text", text);
}

inline Layout identifier_layout() {
  return Layout().text("identifier", "ABCDEF01");
}

inline Layout date_layout() {
  return date_layout(2003, 5, 17);
}

inline Layout journal_layout() {
  return Layout().text("journal name", "J.Am.Chem.Soc.").integer(4).text("international coden", "JACSAT");
}

inline Layout publication_layout() {
  return Layout()
      .part(journal_layout())
      .count("authors", 3)
      .text("author", "A.B.Smith")
      .text("author", "B.de la Second-Author")
      .text("author", "")
      .text("volume", "101")
      .integer(1979)
      .text("page", "2345");
}

inline Layout range_layout() {
  return Layout().enumeration("lower condition", 1).enumeration("upper condition", 2).real(0.001).real(0.005);
}

inline Layout experimental_info_layout() {
  return Layout()
      .real(295.5)
      .text("temperature text", "room")
      .text("pressure", "1 GPa")
      .real(1.25)
      .real(1.5)
      .real(0.045)
      .part(range_layout())
      .enumeration("radiation probe", 2)
      .text("radiation source", "reactor")
      .flag(true)
      .text("diffraction details", "weak")
      .enumeration("powder study", 2)
      .text("refinement details", "riding H")
      .enumeration("intensity method", 3);
}

inline Layout editors_info_layout() {
  return Layout()
      .part(date_layout())
      .part(date_layout(2011, 12, 31))
      .enumeration("category", 3)
      .real(0.4)
      .text("previous refcode", "OLDREF")
      .enumeration("aser match flag", 3)
      .text("connectivity comment", "as published")
      .integer(77)
      .text("memo", "memo")
      .text("remarks", "remarks")
      .enumeration("author correspondence", 2)
      .enumeration("ignored errors", 1);
}

inline Layout chemical_classification_layout() {
  return Layout().enumeration("classification", 11);
}

inline Layout chemical_info_layout() {
  return Layout()
      .text("formula", "C27 H46 O")
      .text("name", "cholesterol")
      .text("bioactivity", "lipid")
      .text("conformer", "chair")
      .text("source", "gallstones")
      .text("peptide sequence", "Gly-Ala")
      .text("isomer", "3-beta")
      .count("classifiers", 2)
      .enumeration("classification", 6)
      .enumeration("classification", 1)
      .count("synonyms", 3)
      .text("synonym", "cholesterin")
      .text("synonym", "")
      .text("synonym", "cholest-5-en-3-ol");
}

inline Layout crystal_info_layout() {
  return Layout()
      .real(4)
      .real(0.5)
      .text("color", "red")
      .text("habit", "needle")
      .text("analogues", "ABCDEF")
      .text("melting point", "371 K")
      .text("notes", "twinned")
      .text("phase transitions", "at 90 K")
      .text("polymorph", "form II")
      .text("sensitivity", "light")
      .text("recrystallisation solvent", "water")
      .text("disorder details", "C7 over two sites")
      .text("other cell details", "reduced cell");
}

inline Layout cross_reference_layout() {
  return cross_reference_layout(1, "Racemate of [ABCDEF], [GHIJKL01]");
}

inline Layout cross_reference_info_layout() {
  return Layout()
      .count("cross-references", 3)
      .part(cross_reference_layout())
      .part(cross_reference_layout(2, "Stereomer of [X1234567]"))
      .part(cross_reference_layout(6, ""));
}

inline Layout deposition_info_layout() {
  return Layout()
      .count("depositions", 3)
      .enumeration("deposition type", 0)
      .text("deposition text", "VORN 123456")
      .enumeration("deposition type", 6)
      .text("deposition text", "R77")
      .enumeration("deposition type", 11)
      .text("deposition text", "ABCDEF");
}

// The operator "-x,1/2+y,-z".
inline Layout symmetry_operator_layout() {
  return Layout()
      .part(Layout().integer(-1).integer(0).integer(0))
      .part(Layout().integer(0).integer(1).integer(0))
      .part(Layout().integer(0).integer(0).integer(-1))
      .real(0)
      .real(0.5)
      .real(0);
}

inline Layout cell_numbers_layout() {
  return Layout().real(10).real(11).real(12).real(90).real(95.5).real(90);
}

inline Layout cell_layout(int operators = 2) {
  Layout layout = cell_numbers_layout().count("symmetry operators", operators);
  for (int count = 0; count < operators; ++count) layout.part(symmetry_operator_layout());
  return layout;
}

inline Layout atom_layout(const std::string& label, const std::string& element) {
  return Layout()
      .text("atom label", label)
      .text("element", element)
      .real(0.25)
      .real(0.5)
      .real(0.75)
      .real(0.5);
}

inline Layout carbon_layout() {
  return atom_layout("C1", "C");
}

inline Layout crystal_maker_layout() {
  return Layout().part(cell_layout()).count("atoms", 2).part(carbon_layout()).part(atom_layout("O1W", "O"));
}

inline Layout connectivity_info_layout() {
  const auto atom = [](const std::string& element, const std::string& label) {
    return Layout().text("element", element).text("atom label", label).integer(-1).integer(2);
  };
  const auto bond = [](int first, int second, int type) {
    return Layout()
        .enumeration("first atom", first)
        .enumeration("second atom", second)
        .enumeration("bond type", type);
  };
  return Layout()
      .count("connectivity atoms", 3)
      .part(atom("C", "C1"))
      .part(atom("O", "O1"))
      .part(atom("H", "H1"))
      .count("connectivity bonds", 2)
      .part(bond(0, 1, 2))
      .part(bond(1, 2, 1));
}

// Eleven items back to back.
inline Layout entry_layout() {
  return Layout()
      .part(identifier_layout())
      .part(crystal_maker_layout())
      .part(cell_layout())
      .part(publication_layout())
      .part(experimental_info_layout())
      .part(editors_info_layout())
      .part(chemical_info_layout())
      .part(crystal_info_layout())
      .part(connectivity_info_layout())
      .part(cross_reference_info_layout())
      .part(deposition_info_layout());
}
