#include "exchange/json/value_writer.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <sstream>

#include "exchange/cif/readable_text.h"

using Json = nlohmann::ordered_json;

Json ValueWriter::of(double value) {
  if (std::isnan(value)) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const bool is_usual = bits == std::bit_cast<std::uint64_t>(std::numeric_limits<double>::quiet_NaN());
    if (is_usual) return "nan";
    std::ostringstream os;
    os << "nan:" << std::hex << bits;
    return os.str();
  }
  if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
  return value;
}

Json ValueWriter::of(const std::string& text) {
  if (is_utf8(text)) return text;
  return {{"latin1", from_latin_1(text)}};
}

Json ValueWriter::of(const Date& date) {
  std::ostringstream os;
  date.print(os);
  return os.str();
}

Json ValueWriter::of(const CrystalSymmetryOperator& symmetry_operator) {
  std::string xyz = symmetry_operator.xyz();
  try {
    if (CrystalSymmetryOperator(xyz) == symmetry_operator) return xyz;
  } catch (const std::invalid_argument&) {
    // One that an archive held and no text can say.
  }
  Json rotation = Json::array();
  Json translation = Json::array();
  for_each_field(symmetry_operator, [&](const char* name, const auto& values) {
    for (const auto value : values)
      (name == std::string("rotation") ? rotation : translation).push_back(of(value));
  });
  return {{"rotation", rotation}, {"translation", translation}};
}

Json ValueWriter::of(const ChemicalClassification& classification) {
  try {
    return classification.str();
  } catch (const std::invalid_argument&) {
    return static_cast<int>(classification.classifier());
  }
}

Json ValueWriter::of(const Cell& cell) {
  return {{"a", of(cell.a())},           {"b", of(cell.b())},
          {"c", of(cell.c())},           {"alpha", of(cell.alpha())},
          {"beta", of(cell.beta())},     {"gamma", of(cell.gamma())},
          {"volume", of(cell.volume())}, {"symmetry_operators", of(cell.symmetry_operators())}};
}

Json ValueWriter::of(const Atom& atom) {
  return {{"label", of(atom.label)},  {"element", of(atom.element)}, {"x", of(atom.position.x)},
          {"y", of(atom.position.y)}, {"z", of(atom.position.z)},    {"occupancy", of(atom.occupancy)}};
}

Json ValueWriter::of(const CrystalMaker& crystal) {
  const std::vector<THandle<Atom>>& atoms = crystal.atoms();
  Json json = {{"cell", of(crystal.cell())}, {"atoms", of(atoms)}};
  remember(atoms);
  return json;
}

Json ValueWriter::of(const ConnectivityInfo& info) {
  return of_graph(*info.connectivity());
}

Json ValueWriter::of(const CrossReferenceInfo& info) {
  Json references = Json::array();
  for (const DatabaseCrossReference& reference : info) {
    std::vector<DatabaseEntryIdentifier> identifiers;
    reference.identifiers(identifiers);
    Json names = Json::array();
    for (const DatabaseEntryIdentifier& identifier : identifiers) {
      const std::string& name = identifier.text();
      names.push_back(of(name));
    }
    references.push_back(
        {{"type", of(reference.type())}, {"text", of(reference.text())}, {"identifiers", names}});
  }
  return references;
}

Json ValueWriter::of(const DepositionInfo& info) {
  Json depositions = Json::array();
  for_each_field(info, [&](const char* /*name*/, const auto& list) {
    for (const auto& [kind, text] : list) {
      DepositionInfo alone;
      std::vector<std::string> numbers;
      alone.set_text(kind, text);
      alone.deposition_numbers(kind, numbers);
      Json number_texts = Json::array();
      for (const std::string& number : numbers) number_texts.push_back(of(number));
      depositions.push_back({{"kind", of(kind)}, {"text", of(text)}, {"numbers", number_texts}});
    }
  });
  return depositions;
}

Json ValueWriter::of(const DisorderSelector& selector) {
  Json atoms = Json::array();
  for (const auto& atom : selector.atoms) atoms.push_back(reference(atom));
  return {{"assembly", of(selector.assembly)}, {"group", of(selector.group)}, {"atoms", atoms}};
}

Json ValueWriter::of(const PublishedBond& bond) {
  return {{"first_atom", reference(bond.first_atom)},
          {"second_atom", reference(bond.second_atom)},
          {"length", of(bond.length)},
          {"first_flag", bond.first_flag},
          {"second_flag", bond.second_flag}};
}
