#include "exchange/json/value_reader.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <unordered_set>

using Json = nlohmann::ordered_json;

namespace {

// "nan:fff8000000000000"; false for any other text.
bool read_nan_bits(const std::string& text, double& value) {
  constexpr std::string_view mark = "nan:";
  constexpr std::size_t digits = 16;
  if (text.size() != mark.size() + digits || text.compare(0, mark.size(), mark) != 0) return false;
  std::uint64_t bits = 0;
  const char* const end = text.data() + text.size();
  const auto [after, error] = std::from_chars(text.data() + mark.size(), end, bits, 16);
  if (error != std::errc() || after != end || !std::isnan(std::bit_cast<double>(bits))) return false;
  value = std::bit_cast<double>(bits);
  return true;
}

}  // namespace

void ValueReader::fail(const std::string& what) const {
  const std::string entry = entry_.empty() ? "" : "entry " + entry_ + ": ";
  throw JsonEntryError(entry + (place_.empty() ? what : place_ + ": " + what));
}

void ValueReader::note_unknown(const Json& object, std::initializer_list<std::string_view> known) {
  note_unknown_names(object, {known.begin(), known.end()});
}

void ValueReader::note_unknown_names(const Json& object, const std::vector<std::string_view>& known) {
  for (const auto& [name, value] : object.items()) {
    if (std::find(known.begin(), known.end(), name) != known.end()) continue;
    unknown_.push_back(place_.empty() ? name : place_ + "." + name);
  }
}

void ValueReader::read(const Json& json, bool& value) {
  expect(json.is_boolean(), "true or false is expected");
  value = json.get<bool>();
}

void ValueReader::read(const Json& json, int& value) {
  expect(json.is_number_integer(), "a whole number is expected");
  const bool fits = json.is_number_unsigned() ? json.get<std::uint64_t>() <= std::numeric_limits<int>::max()
                                              : json.get<std::int64_t>() >= std::numeric_limits<int>::min();
  expect(fits, "a number of 32 bits is expected");
  value = json.get<int>();
}

void ValueReader::read(const Json& json, double& value) {
  if (json == "nan") {
    value = std::numeric_limits<double>::quiet_NaN();
  } else if (json.is_string() && read_nan_bits(json.get_ref<const std::string&>(), value)) {
    return;
  } else if (json == "inf" || json == "-inf") {
    value = json == "inf" ? HUGE_VAL : -HUGE_VAL;
  } else {
    expect(json.is_number(), "a number is expected");
    value = json.get<double>();
  }
}

void ValueReader::read(const Json& json, std::string& text) {
  if (json.is_string()) {
    text = json.get<std::string>();
  } else {
    read_latin_1(json, text);
  }
  const std::size_t nul = text.find('\0');
  if (nul != std::string::npos)
    fail("any character but \\u0000 is expected, which byte " + std::to_string(nul) + " of the text is");
}

void ValueReader::read_latin_1(const Json& json, std::string& text) const {
  const bool is_latin_1 =
      json.is_object() && json.size() == 1 && json.contains("latin1") && json["latin1"].is_string();
  expect(is_latin_1, "a text is expected");
  const auto& characters = json["latin1"].get_ref<const std::string&>();
  text.clear();
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const auto lead = static_cast<unsigned char>(characters[i]);
    if (lead < 0x80) {
      text += characters[i];
      continue;
    }
    expect(lead <= 0xC3, "a character of ISO 8859-1 is expected");
    text += static_cast<char>((lead & 0x03) << 6 | (static_cast<unsigned char>(characters[++i]) & 0x3F));
  }
}

void ValueReader::read(const Json& json, Date& date) {
  expect(json.is_string(), "a date is expected");
  const auto& text = json.get_ref<const std::string&>();
  int parts[3] = {};
  const char* place = text.data();
  const char* const end = text.data() + text.size();
  for (int& part : parts) {
    if (&part != parts) {
      expect(place < end && *place == '-', "a date is written as 2003-05-17");
      ++place;
    }
    const auto [after, error] = std::from_chars(place, end, part);
    expect(error == std::errc(), "a date is written as 2003-05-17");
    place = after;
  }
  expect(place == end, "a date is written as 2003-05-17");
  // Archives hold dates that are no day of the calendar, those known to the month for instance.
  rebuild(date, parts[0], parts[1], parts[2]);
}

void ValueReader::read(const Json& json, CrystalSymmetryOperator& symmetry_operator) {
  if (json.is_string()) {
    try {
      symmetry_operator = CrystalSymmetryOperator(json.get<std::string>());
    } catch (const std::invalid_argument& error) {
      fail(error.what());
    }
    return;
  }
  std::vector<int> rotation;
  std::vector<double> translation;
  expect(json.is_object(), "a symmetry operator is expected");
  member(json, "rotation", rotation);
  member(json, "translation", translation);
  expect(rotation.size() == 9 && translation.size() == 3,
         "nine whole numbers and three numbers are expected");
  rebuild(symmetry_operator, rotation[0], rotation[1], rotation[2], rotation[3], rotation[4], rotation[5],
          rotation[6], rotation[7], rotation[8], translation[0], translation[1], translation[2]);
}

void ValueReader::read(const Json& json, ChemicalClassification& classification) {
  std::vector<std::pair<int, std::string>> members;
  for (int value = ChemicalClassification::carbohydrate; value <= ChemicalClassification::high_polymer;
       ++value) {
    const ChemicalClassification known(static_cast<ChemicalClassification::Classifier>(value));
    members.emplace_back(value, known.str());
  }
  int number = ChemicalClassification::none;
  if (!json.is_string()) read(json, number);
  for (const auto& [value, text] : members) {
    if (json.is_string() ? text != json.get_ref<const std::string&>() : value != number) continue;
    classification = ChemicalClassification(static_cast<ChemicalClassification::Classifier>(value));
    return;
  }
  fail_as_no_member(json.is_string() ? "'" + json.get<std::string>() + "'" : std::to_string(number), members);
}

void ValueReader::read(const Json& json, Journal& journal) {
  expect(json.is_object(), "an object is expected");
  journal = Journal(Journal::max_vorn_coden() + 1);
  std::string name = std::as_const(journal).name();
  int coden = journal.coden();
  std::string international_coden = std::as_const(journal).international_coden();
  member(json, "name", name);
  member(json, "coden", coden);
  member(json, "international_coden", international_coden);
  note_unknown(json, {"name", "coden", "international_coden"});
  rebuild(journal, name, coden, international_coden);
}

void ValueReader::read(const Json& json, UncertainValue& value) {
  double number = 0.0;
  double standard_uncertainty = 0.0;
  if (json.is_number()) {
    read(json, number);
  } else {
    expect(json.is_object(), "a number or an object is expected");
    member(json, "value", number);
    member(json, "standard_uncertainty", standard_uncertainty);
    note_unknown(json, {"value", "standard_uncertainty"});
  }
  value = UncertainValue(number, standard_uncertainty);
}

void ValueReader::read(const Json& json, Range<double, DoubleComparator>& range) {
  expect(json.is_object(), "an object is expected");
  RangeLimit::LimitCondition conditions[] = {range.lower_condition(), range.upper_condition()};
  double limits[] = {range.lower(), range.upper()};
  member(json, "lower_condition", conditions[0]);
  member(json, "upper_condition", conditions[1]);
  member(json, "lower", limits[0]);
  member(json, "upper", limits[1]);
  note_unknown(json, {"lower_condition", "upper_condition", "lower", "upper"});
  range = {limits[0], conditions[0], limits[1], conditions[1], range.comparator()};
}

void ValueReader::read(const Json& json, Cell& cell) {
  expect(json.is_object(), "an object is expected");
  double numbers[] = {cell.a(), cell.b(), cell.c(), cell.alpha(), cell.beta(), cell.gamma()};
  THandle<std::vector<CrystalSymmetryOperator>> operators(new std::vector<CrystalSymmetryOperator>);
  const char* const names[] = {"a", "b", "c", "alpha", "beta", "gamma"};
  for (std::size_t i = 0; i < std::size(names); ++i) member(json, names[i], numbers[i]);
  member(json, "symmetry_operators", *operators);
  note_unknown(json, {"a", "b", "c", "alpha", "beta", "gamma", "volume", "symmetry_operators"});
  cell = Cell(numbers[0], numbers[1], numbers[2], numbers[3], numbers[4], numbers[5], operators);
}

void ValueReader::read(const Json& json, Atom& atom) {
  expect(json.is_object(), "an object is expected");
  member(json, "label", atom.label);
  member(json, "element", atom.element);
  member(json, "x", atom.position.x);
  member(json, "y", atom.position.y);
  member(json, "z", atom.position.z);
  member(json, "occupancy", atom.occupancy);
  note_unknown(json, {"label", "element", "x", "y", "z", "occupancy"});
}

void ValueReader::read(const Json& json, CrystalMaker& crystal) {
  expect(json.is_object(), "an object is expected");
  THandle<Cell> cell(new Cell);
  member(json, "cell", cell);
  expect(!cell.is_null(), "a crystal has a cell");
  List<Atom> atoms;
  member(json, "atoms", atoms);
  note_unknown(json, {"cell", "atoms"});
  require_each(atoms, "atoms", "an atom is expected");
  list_of<Atom>() = atoms;
  crystal = CrystalMaker(cell, atoms);
}

void ValueReader::read(const Json& json, ConnectivityInfo& info) {
  const THandle<Connectivity> connectivity(new Connectivity);
  read_graph(json, *connectivity);
  require_each(connectivity->atoms, "atoms", "an atom is expected");
  require_each(connectivity->bonds, "bonds", "a bond is expected");
  require_ends_in_list(*connectivity);
  info = ConnectivityInfo(connectivity);
}

// A bond of a connectivity is between two of its atoms.
void ValueReader::require_ends_in_list(const Connectivity& connectivity) {
  std::unordered_set<const ConnectivityAtom*> atoms;
  for (const auto& atom : connectivity.atoms) atoms.insert(atom.get());
  const Step list(*this, "bonds");
  for (std::size_t position = 0; position < connectivity.bonds.size(); ++position) {
    const ConnectivityBond& bond = *connectivity.bonds[position];
    const Step step(*this, position);
    for (const auto& [name, atom] : {std::pair("first", bond.first), std::pair("second", bond.second)}) {
      const Step end(*this, name);
      expect(atoms.count(atom.get()) != 0, "the position of an atom is expected");
    }
  }
}

void ValueReader::read(const Json& json, ChemicalDiagram& diagram) {
  read_graph(json, diagram);
}

void ValueReader::read(const Json& json, CrossReferenceInfo& info) {
  for_each_element(json, [&](const Json& element) {
    expect(element.is_object(), "an object is expected");
    DatabaseCrossReference::CrossReferenceType type = DatabaseCrossReference::unknown;
    std::string text;
    member(element, "type", type);
    member(element, "text", text);
    note_unknown(element, {"type", "text", "identifiers"});
    expect(type != DatabaseCrossReference::unknown, "a type is expected");
    info.insert(DatabaseCrossReference(type, text));
  });
}

void ValueReader::read(const Json& json, DepositionInfo& info) {
  std::vector<DepositionInfo::Deposition> depositions;
  for_each_element(json, [&](const Json& element) {
    expect(element.is_object(), "an object is expected");
    auto& [kind, text] = depositions.emplace_back();
    kind = DepositionInfo::contributor;
    member(element, "kind", kind);
    member(element, "text", text);
    note_unknown(element, {"kind", "text", "numbers"});
  });
  // As an archive has them: their order is part of the record.
  rebuild_from(info, [&](Archive& archive) {
    archive << static_cast<int>(depositions.size());
    for (const auto& deposition : depositions) archive << deposition;
  });
}

void ValueReader::read(const Json& json, DisorderSelector& selector) {
  expect(json.is_object(), "an object is expected");
  member(json, "assembly", selector.assembly);
  member(json, "group", selector.group);
  const auto atoms = json.find("atoms");
  const Step step(*this, "atoms");
  if (atoms == json.end()) {
    absent_.push_back(place());
  } else {
    for_each_element(*atoms,
                     [&](const Json& element) { read_reference(element, selector.atoms.emplace_back()); });
  }
  note_unknown(json, {"assembly", "group", "atoms"});
}

void ValueReader::read(const Json& json, PublishedGeometry& geometry) {
  expect(json.is_object(), "an object is expected");
  const auto bonds = json.find("bonds");
  if (bonds == json.end() || bonds->is_null()) {
    geometry.bonds = THandle<std::vector<THandle<PublishedBond>>>();
  } else {
    const Step step(*this, "bonds");
    geometry.bonds = THandle<std::vector<THandle<PublishedBond>>>(new std::vector<THandle<PublishedBond>>);
    for_each_element(*bonds, [&](const Json& element) {
      if (element.is_null()) {
        geometry.bonds->emplace_back();
        return;
      }
      expect(element.is_object(), "an object is expected");
      PublishedBond bond({}, {}, UncertainValue(0.0), false, false);
      member_reference(element, "first_atom", bond.first_atom);
      member_reference(element, "second_atom", bond.second_atom);
      member(element, "length", bond.length);
      member(element, "first_flag", bond.first_flag);
      member(element, "second_flag", bond.second_flag);
      note_unknown(element, {"first_atom", "second_atom", "length", "first_flag", "second_flag"});
      geometry.bonds->push_back(THandle<PublishedBond>(new PublishedBond(bond)));
    });
  }
  member(json, "flag", geometry.flag);
  note_unknown(json, {"bonds", "flag"});
}
