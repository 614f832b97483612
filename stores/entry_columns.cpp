#include <stores/entry_columns.h>
#include <stores/formula.h>
#include <stores/lattice_columns.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <map>

namespace {

std::optional<double> known(double value) {
  if (value == 0.0 || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<std::int64_t> known(int value) {
  if (value == 0) return std::nullopt;
  return value;
}

std::optional<std::string> known(const std::string& text) {
  if (text.empty()) return std::nullopt;
  return text;
}

void add(std::vector<std::string>& texts, const std::string& text) {
  if (!text.empty() && std::find(texts.begin(), texts.end(), text) == texts.end()) texts.push_back(text);
}

// The sites of the unit cell by element, from those of the asymmetric unit: as many as there are operators,
// over those that leave the site where it is.
std::vector<ElementCount> elements_of(const CrystalMaker& crystal, double z) {
  constexpr std::size_t most_images = 10'000'000;
  const auto operators = crystal.cell()->symmetry_operators();
  const std::size_t operator_count = operators.is_null() ? 0 : operators->size();
  if (crystal.atoms().size() * std::max<std::size_t>(operator_count, 1) > most_images) return {};
  const auto is_same = [](double one, double other) {
    constexpr double tolerance = 1e-3;  // of a cell edge
    const double apart = std::abs(one - other);
    return std::abs(apart - std::round(apart)) < tolerance;
  };
  std::map<std::string, double> counts;
  for (const auto& atom : crystal.atoms()) {
    if (atom.is_null() || !is_element(atom->element)) continue;
    std::size_t fixing = 0;
    for (std::size_t index = 0; index < operator_count; ++index) {
      const FractionalCoordinates image = (*operators)[index].apply(atom->position);
      if (is_same(image.x, atom->position.x) && is_same(image.y, atom->position.y) &&
          is_same(image.z, atom->position.z)) {
        ++fixing;
      }
    }
    const double images =
        fixing == 0 ? 1.0 : static_cast<double>(operator_count) / static_cast<double>(fixing);
    counts[atom->element] += images * atom->occupancy;
  }
  std::vector<ElementCount> elements;
  for (const auto& [symbol, count] : counts) {
    const double in_formula = std::round(1e6 * count / (z > 0.0 ? z : 1.0)) / 1e6;
    if (in_formula > 0.0 && in_formula < 1e12) elements.push_back({symbol, in_formula});
  }
  return elements;
}

void take_elements(EntryColumns& columns) {
  if (columns.elements.empty()) return;
  columns.element_count = static_cast<std::int64_t>(columns.elements.size());
  columns.formula = hill_text(columns.elements, " ");
  if (std::all_of(columns.elements.begin(), columns.elements.end(),
                  [](const ElementCount& element) { return element.count == std::floor(element.count); })) {
    columns.hill_formula = hill_text(columns.elements, "");
  }
  if (const auto reduced = reduced_elements(columns.elements)) {
    std::string text;
    for (const ElementCount& element : *reduced) text += hill_text({element}, "");
    columns.reduced_formula = text;
    columns.anonymous_formula = anonymous_text(*reduced);
  }
}

// "Wyckoff" of "R.W.G.Wyckoff", "Wyckoff, R. W. G." and "Ralph Wyckoff"; "van der Waals" of "J.D.van der
// Waals".
std::string surname(std::string author) {
  constexpr const char* blanks = " \t";
  if (const std::size_t comma = author.find(','); comma != std::string::npos) author.erase(comma);
  for (const std::string ending : {" Jr.", " Jr", " Sr.", " II", " III"}) {
    if (author.ends_with(ending)) author.erase(author.size() - ending.size());
  }
  author.erase(author.find_last_not_of(" \t.") + 1);
  if (const std::size_t dot = author.rfind('.'); dot != std::string::npos) {
    author.erase(0, dot + 1);
  } else if (std::size_t word = author.find_last_of(blanks); word != std::string::npos) {
    // Small words before it belong to a surname: "van", "de la".
    while (word > 0) {
      const std::size_t before = author.find_last_of(blanks, word - 1);
      const std::size_t begin = before == std::string::npos ? 0 : before + 1;
      if (begin >= word || author[begin] < 'a' || author[begin] > 'z') break;
      word = before == std::string::npos ? 0 : before;
      if (before == std::string::npos) break;
    }
    author.erase(0, word == 0 && author.find_first_of(blanks) != 0 ? 0 : word + 1);
  }
  author.erase(0, std::min(author.find_first_not_of(" \t-"), author.size()));
  return author;
}

void take_publication(EntryColumns& columns, const Publication& publication) {
  for (const std::string& author : publication.authors) {
    add(columns.authors, author);
    add(columns.surnames, surname(author));
  }
  const std::string nobody = "Unknown";
  for (const std::string& text : {publication.journal.name(), publication.journal.international_coden()}) {
    if (text != nobody) add(columns.journals, text);
  }
  columns.coden = known(publication.journal.coden());
  columns.year = known(publication.year);
  columns.volume_number = known(publication.volume);
  columns.page = known(publication.page);
}

// The text, the numbers in it, and its words with a digit.
void take_deposition(std::vector<std::string>& into, const DepositionInfo& depositions,
                     DepositionInfo::DepositionType type) {
  if (!depositions.has_text(type)) return;
  const std::string text = depositions.text(type);
  add(into, text);
  std::vector<std::string> numbers;
  depositions.deposition_numbers(type, numbers);
  for (const std::string& number : numbers) add(into, number);
  std::string word;
  for (const char c : text + " ") {
    if (c == ' ' || c == '\t' || c == ',' || c == ';') {
      if (word.find_first_of("0123456789") != std::string::npos) add(into, word);
      word.clear();
    } else {
      word += c;
    }
  }
}

// "2007-04-05T14:30:20Z"; nothing outside the years that have four digits.
std::optional<std::string> timestamp(std::int64_t seconds) {
  constexpr std::int64_t day = 86400;
  constexpr std::int64_t end = 253402300800;  // 10000-01-01
  if (seconds <= 0 || seconds >= end) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::sys_days(std::chrono::days(seconds / day)));
  const auto rest = static_cast<int>(seconds % day);
  std::array<char, 64> text;
  const int length = std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ",
                                   static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                                   static_cast<unsigned>(date.day()), rest / 3600, rest / 60 % 60, rest % 60);
  return std::string(text.data(), static_cast<std::size_t>(length));
}

}  // namespace

EntryColumns entry_columns(const CrystalStructureDatabaseEntry& entry, const EntryOrigin& origin) {
  EntryColumns columns;
  columns.identifier = entry.identifier().text();
  columns.source = known(origin.file);
  columns.block = known(origin.block);
  columns.sha256 = known(origin.sha256);
  columns.stored_at = timestamp(origin.stored_at);
  const auto chemical = entry.chemical_info();
  if (!chemical.is_null()) {
    columns.descriptive_formula = known(chemical->formula);
    add(columns.names, chemical->name);
    for (const std::string& synonym : chemical->synonyms) add(columns.names, synonym);
    if (const auto elements = parse_formula(chemical->formula)) columns.elements = *elements;
  }
  const auto crystal = entry.crystal_maker();
  if (!crystal.is_null()) {
    columns.atom_count = static_cast<std::int64_t>(crystal->atoms().size());
    if (columns.elements.empty()) {
      const auto info = entry.crystal_info();
      columns.elements = elements_of(*crystal, info.is_null() ? 0.0 : info->z);
    }
  }
  take_elements(columns);
  if (const auto publication = entry.publication(); !publication.is_null()) {
    take_publication(columns, *publication);
  }
  if (const auto cell = entry.cell(); !cell.is_null()) {
    columns.a = known(cell->a());
    columns.b = known(cell->b());
    columns.c = known(cell->c());
    columns.alpha = known(cell->alpha());
    columns.beta = known(cell->beta());
    columns.gamma = known(cell->gamma());
    columns.volume = known(cell->volume());
    take_lattice(columns, *cell);
  }
  if (const auto experiment = entry.experimental_info(); !experiment.is_null()) {
    columns.measured_density = known(experiment->experimental_density);
    columns.calculated_density = known(experiment->calculated_density);
    columns.density = columns.measured_density ? columns.measured_density : columns.calculated_density;
    columns.r_factor = known(experiment->r_factor);
    columns.temperature = known(experiment->temperature);
  }
  if (const auto depositions = entry.deposition_info(); !depositions.is_null()) {
    for (int type = DepositionInfo::vorn; type <= DepositionInfo::mrv_refcode; ++type) {
      take_deposition(columns.depositions, *depositions, static_cast<DepositionInfo::DepositionType>(type));
    }
  }
  if (const auto references = entry.cross_reference_info(); !references.is_null()) {
    std::vector<DatabaseEntryIdentifier> related;
    references->cross_related_identifiers(related);
    for (const DatabaseEntryIdentifier& identifier : related) add(columns.related, identifier.text());
  }
  return columns;
}
