#include "full_layouts.h"

namespace {

Layout date(int year, int month, int day) {
  return Layout().integer(year).integer(month).integer(day);
}

Layout cross_reference(int type, const std::string& text) {
  return Layout().enumeration("cross-reference type", type).text("cross-reference text", text);
}

}  // namespace

Layout identifier_layout() {
  return Layout().text("identifier", "ABCDEF01");
}

Layout date_layout() {
  return date(2003, 5, 17);
}

Layout journal_layout() {
  return Layout().text("journal name", "J.Am.Chem.Soc.").integer(4).text("international coden", "JACSAT");
}

Layout publication_layout() {
  return Layout()
      .part(journal_layout())
      .count("authors", 3)
      .text("author", "A.Author")
      .text("author", "B.de la Second-Author")
      .text("author", "")
      .text("volume", "101")
      .integer(1979)
      .text("page", "2345");
}

Layout range_layout() {
  return Layout().enumeration("lower condition", 1).enumeration("upper condition", 2).real(0.001).real(0.005);
}

Layout experimental_info_layout() {
  return Layout()
      .real(295.5)
      .text("temperature text", "at room temperature")
      .text("pressure", "2 GPa")
      .real(1.25)
      .real(1.2625)
      .real(0.042)
      .part(range_layout())
      .enumeration("radiation probe", 2)
      .text("radiation source", "spallation")
      .flag(true)
      .text("diffraction details", "twinned")
      .enumeration("powder study", 1)
      .text("refinement details", "hydrogen atoms riding")
      .enumeration("intensity method", 3);
}

Layout editors_info_layout() {
  return Layout()
      .part(date_layout())
      .part(date(2004, 2, 29))
      .enumeration("category", 3)
      .real(0.4)
      .text("previous refcode", "GHIJKL")
      .enumeration("aser match flag", -1)
      .text("connectivity comment", "as drawn")
      .integer(77)
      .text("memo", "ask for the hydrogen positions")
      .text("remarks", "none")
      .enumeration("author correspondence", 2)
      .enumeration("ignored errors", 1);
}

Layout chemical_classification_layout() {
  return Layout().enumeration("classification", 11);
}

Layout chemical_info_layout() {
  return Layout()
      .text("formula", "C10 H8")
      .text("name", "naphthalene")
      .text("bioactivity", "insecticide")
      .text("conformer", "planar")
      .text("source", "coal tar")
      .text("peptide sequence", "Gly-Ala")
      .text("isomer", "none")
      .count("classifiers", 2)
      .part(chemical_classification_layout())
      .enumeration("classification", 1)
      .count("synonyms", 2)
      .text("synonym", "tar camphor")
      .text("synonym", "naphthalin");
}

Layout crystal_info_layout() {
  return Layout()
      .real(4)
      .real(0.5)
      .text("color", "colourless")
      .text("habit", "needle")
      .text("analogues", "anthracene")
      .text("melting point", "353 K")
      .text("notes", "sublimes")
      .text("phase transitions", "none below 300 K")
      .text("polymorph", "form I")
      .text("sensitivity", "light")
      .text("recrystallisation solvent", "ethanol")
      .text("disorder details", "over two sites")
      .text("other cell details", "pseudo-orthorhombic");
}

Layout cross_reference_layout() {
  return cross_reference(1, "Racemate of [ABCDEF], [GHIJKL01]");
}

Layout cross_reference_info_layout() {
  return Layout()
      .count("cross-references", 3)
      .part(cross_reference_layout())
      .part(cross_reference(2, "Stereomer of [X1234567]"))
      .part(cross_reference(6, ""));
}

Layout deposition_info_layout() {
  return Layout()
      .count("depositions", 3)
      .enumeration("deposition type", 0)
      .text("deposition text", "VORN 123456")
      .enumeration("deposition type", 6)
      .text("deposition text", "R77")
      .enumeration("deposition type", 11)
      .text("deposition text", "ABCDEF");
}

Layout symmetry_operator_layout() {
  // 1/2-x,-y,1/2+z
  return Layout()
      .part(Layout().integer(-1).integer(0).integer(0))
      .part(Layout().integer(0).integer(-1).integer(0))
      .part(Layout().integer(0).integer(0).integer(1))
      .real(0.5)
      .real(0)
      .real(0.5);
}

Layout cell_layout() {
  return Layout()
      .part(Layout().real(5.95).real(8.23).real(8.65))
      .part(Layout().real(90).real(122.9).real(90))
      .count("symmetry operators", 2)
      .part(symmetry_operator_layout())
      .part(symmetry_operator_layout());
}

Layout crystal_maker_layout() {
  const auto atom = [](const std::string& label, const std::string& element) {
    return Layout()
        .text("atom label", label)
        .text("element", element)
        .real(0.25)
        .real(-0.125)
        .real(0.75)
        .real(0.5);
  };
  return Layout().part(cell_layout()).count("atoms", 2).part(atom("C1", "C")).part(atom("O1W", "O"));
}

Layout connectivity_info_layout() {
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
Layout entry_layout() {
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
