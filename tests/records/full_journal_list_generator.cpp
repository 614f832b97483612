// full_journal_list_generator FILE: writes a journal list of full size for the tests.
//
// The lines that are known stand in it as they are. All others are made up and say so; together they have the
// proportions of a real list: current, discontinued and placeholder lines, numbers in place of CODENs, titles
// of up to 103 characters, and columns that run together.
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

enum class Kind { current, current_without_coden, discontinued, placeholder };

const std::map<int, std::string> known_lines = {
    {1, "0001 ACCRA9  1967   1   0   0  -1Acta Crystallogr."},
    {4, "0004 JACSAT     0   1   0   0   1J.Am.Chem.Soc."},
    {11, "0011 GCITA9  1997   11290   0  -1Gazz.Chim.Ital."},
    {35, "0035 JOCEAH     0   0   0   0   1J.Org.Chem."},
    {36, "0036 JORCAI     0  24   0-195   1J.Organomet.Chem."},
    {62, "0062 000062     0   1   0   0   1Cancer Biotherapy and Radiopharmaceuticals"},
    {861, "0861 000861     0   0   0   0  -1"},
    {1418, "1418 CESCAC     0   1   0   0   1Chem.Eng.Sci."}};

// What the 1410 other lines are, in an order that mixes them.
std::vector<Kind> kinds() {
  std::vector<Kind> sorted;
  sorted.insert(sorted.end(), 898, Kind::current);
  sorted.insert(sorted.end(), 186, Kind::current_without_coden);
  sorted.insert(sorted.end(), 136, Kind::discontinued);
  sorted.insert(sorted.end(), 190, Kind::placeholder);
  std::vector<Kind> mixed;
  // 991 has no factor in common with 1410: every one is taken once.
  for (std::size_t index = 0; index < sorted.size(); ++index)
    mixed.push_back(sorted[index * 991 % sorted.size()]);
  return mixed;
}

// 24 to 103 characters, some of which mean something in source code.
std::string title(int number) {
  std::string text = "Made-up Title \"?\?/\\ " + std::to_string(number);
  text.resize(24 + static_cast<std::size_t>(number) % 80, 'x');
  return text;
}

std::string made_up_line(int number, Kind kind) {
  const bool placeholder = kind == Kind::placeholder;
  const bool has_coden = kind == Kind::current || kind == Kind::discontinued;
  const bool full_columns = !placeholder && number % 7 == 0;
  const int year = kind == Kind::discontinued ? 1990 : 0;
  char start[64];
  std::snprintf(start, sizeof start, "%04d %s%04d%6d%4d%4d%4d%4d", number, has_coden ? "ZZ" : "00", number,
                full_columns ? 199000 : year, full_columns ? 1234 : 0, full_columns ? 5678 : 0,
                full_columns ? -195 : 0, placeholder || kind == Kind::discontinued ? -1 : 1);
  return placeholder ? start : start + title(number);
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: full_journal_list_generator FILE\n";
    return 2;
  }
  std::ofstream file(arguments[1], std::ios::binary);
  const std::vector<Kind> made_up = kinds();
  auto kind = made_up.begin();
  for (int number = 1; number <= 1418; ++number) {
    const auto known = known_lines.find(number);
    file << (known != known_lines.end() ? known->second : made_up_line(number, *kind++)) << '\n';
  }
  file << std::flush;
  return file ? 0 : 1;
}
