#include "tools/files/file_kind.h"

#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <sys/stat.h>
#include <utilities/archive.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string_view>
#include <vector>

#include "tools/output/list_columns.h"

namespace {

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};

std::string beginning_of(const std::string& path) {
  const std::unique_ptr<FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
  if (file == nullptr) return "";
  std::string text(longest_beginning, '\0');
  text.resize(std::fread(text.data(), 1, text.size(), file.get()));
  return text;
}

std::string_view first_line(std::string_view text) {
  return text.substr(0, text.find_first_of("\r\n"));
}

std::string_view without_leading_space(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r\n");
  return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
}

bool starts_with_word(std::string_view text, std::string_view word) {
  return text.size() >= word.size() && std::equal(word.begin(), word.end(), text.begin(), [](char a, char b) {
           return a == std::tolower(static_cast<unsigned char>(b));
         });
}

// A file of comments only is taken for a CIF where it says so itself.
bool looks_like_cif(std::string_view text) {
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  if (text.starts_with("#\\#CIF")) return true;
  text = without_leading_space(text);
  while (text.starts_with('#')) {
    text.remove_prefix(first_line(text).size());
    text = without_leading_space(text);
  }
  return starts_with_word(text, "data_") || starts_with_word(text, "global_");
}

bool looks_like_json(std::string_view text) {
  text = without_leading_space(text);
  if (text.empty() || (text[0] != '{' && text[0] != '[')) return false;
  const std::string_view inner = without_leading_space(text.substr(1));
  return !inner.empty() &&
         (text[0] == '{' ? inner[0] == '"' || inner[0] == '}' : inner[0] == '{' || inner[0] == ']');
}

// The first of the words that commas separate, which is taken off.
std::string_view take_name(std::string_view& line) {
  const std::size_t comma = line.find(',');
  const std::string_view name = line.substr(0, comma);
  line.remove_prefix(comma == line.npos ? line.size() : comma + 1);
  return name;
}

// The heading that this program writes: names of columns.
bool looks_like_csv(std::string_view text) {
  static const std::vector<std::string> columns = list_columns();
  std::string_view line = first_line(text);
  if (line.empty() || line.size() == text.size()) return false;
  while (!line.empty()) {
    if (std::find(columns.begin(), columns.end(), take_name(line)) == columns.end()) return false;
  }
  return true;
}

// "O 0.0 -1.5 2": a word and three numbers.
bool is_atom_of_xyz(std::string_view line) {
  for (int word = 0; word < 4; ++word) {
    line = without_leading_space(line);
    const std::string_view text = line.substr(0, line.find_first_of(" \t"));
    const bool is_number = text.find_first_not_of("0123456789+-.eE") == text.npos;
    if (text.empty() || (word > 0 && !is_number)) return false;
    line.remove_prefix(text.size());
  }
  return true;
}

// The number of atoms alone on the first line, then the line of comment, then atoms.
bool looks_like_xyz(std::string_view text) {
  const std::string_view line = without_leading_space(first_line(text));
  const bool is_number = !line.empty() && std::all_of(line.begin(), line.end(), [](unsigned char c) {
    return std::isdigit(c) != 0 || c == ' ';
  });
  const std::size_t comment = text.find('\n');
  if (!is_number || comment == text.npos) return false;
  if (line.find_first_not_of("0 ") == line.npos) return true;
  const std::size_t atom = text.find('\n', comment + 1);
  return atom != text.npos && is_atom_of_xyz(first_line(text.substr(atom + 1)));
}

bool looks_like_digest(std::string_view text) {
  constexpr std::size_t digits = 64;
  return text.size() > digits + 2 && text.substr(digits, 2) == "  " &&
         std::all_of(text.begin(), text.begin() + digits,
                     [](unsigned char c) { return std::isdigit(c) != 0 || (c >= 'a' && c <= 'f'); });
}

// Whether an entry can be read at its beginning. The length of the identifier rules out nearly everything
// else.
bool looks_like_archive(const std::string& path, std::string_view text) {
  struct stat status = {};
  if (text.size() < 4 || ::stat(path.c_str(), &status) != 0) return false;
  std::uint32_t length = 0;
  for (std::size_t i = 4; i-- > 0;) length = length << 8U | static_cast<unsigned char>(text[i]);
  if (static_cast<std::int64_t>(length) + 4 > status.st_size) return false;
  const std::unique_ptr<FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
  if (file == nullptr) return false;
  CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier(), {}, {}, {}, {}, {}, {}, {}, {}, {},
                                               {}, {}, {}, {}, {}, {}, {});
  try {
    Archive archive(file.get());
    entry.read(archive);
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool begins_like_xml_of_svg(std::string_view text) {
  const std::string_view begin = without_leading_space(text);
  return (begin.starts_with("<?xml") || begin.starts_with("<svg")) && text.find("<svg") != std::string::npos;
}

struct NamedKind {
  FileKind kind;
  const char* text;
};
constexpr std::array kind_texts = {
    NamedKind{FileKind::empty, "an empty file"},
    NamedKind{FileKind::archive, "a stored archive"},
    NamedKind{FileKind::store, "a store"},
    NamedKind{FileKind::cif, "a CIF"},
    NamedKind{FileKind::xyz, "an XYZ file"},
    NamedKind{FileKind::json, "JSON"},
    NamedKind{FileKind::csv, "CSV"},
    NamedKind{FileKind::svg, "an SVG picture"},
    NamedKind{FileKind::png, "a PNG picture"},
    NamedKind{FileKind::pdf, "a PDF"},
    NamedKind{FileKind::digest, "a digest"},
    NamedKind{FileKind::compressed, "a compressed file"},
    NamedKind{FileKind::unknown, "something else"},
};

}  // namespace

FileKind kind_of_file(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return FileKind::unknown;
  if (status.st_size == 0) return FileKind::empty;
  return kind_of_beginning(path, beginning_of(path));
}

FileKind kind_of_beginning(const std::string& path, std::string_view text) {
  using namespace std::string_view_literals;
  if (text.empty()) return FileKind::empty;
  if (text.starts_with("SQLite format 3\0"sv)) return FileKind::store;
  if (text.starts_with("\x89PNG"sv)) return FileKind::png;
  if (text.starts_with("%PDF-"sv)) return FileKind::pdf;
  if (text.starts_with("\x1F\x8B"sv)) return FileKind::compressed;
  if (begins_like_xml_of_svg(text)) return FileKind::svg;
  if (looks_like_archive(path, text)) return FileKind::archive;
  if (looks_like_digest(text)) return FileKind::digest;
  if (looks_like_cif(text)) return FileKind::cif;
  if (looks_like_json(text)) return FileKind::json;
  if (looks_like_xyz(text)) return FileKind::xyz;
  if (looks_like_csv(text)) return FileKind::csv;
  return FileKind::unknown;
}

std::string kind_text(FileKind kind) {
  return std::find_if(kind_texts.begin(), kind_texts.end(),
                      [kind](const NamedKind& named) { return named.kind == kind; })
      ->text;
}
