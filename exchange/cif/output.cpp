#include "exchange/cif/output.h"

#include <algorithm>
#include <gemmi/cifdoc.hpp>
#include <gemmi/to_cif.hpp>
#include <sstream>

namespace {

// CIF 1.1 has lines of at most 2048 characters.
constexpr std::size_t longest_line = 2000;

bool has_long_line(const std::string& text) {
  std::size_t begin = 0;
  while (true) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    if (end - begin > longest_line) return true;
    if (end == text.size()) return false;
    begin = end + 1;
  }
}

bool ends_in_backslash(const std::string& line) {
  const std::size_t last = line.find_last_not_of(" \t");
  return last != std::string::npos && line[last] == '\\';
}

// A text field whose lines are folded at a backslash and begin with a prefix, so that none begins with a
// semicolon (International Tables for Crystallography, volume G, section 2.2.7.4.11).
std::string folded(const std::string& text) {
  constexpr std::size_t width = 78;
  std::string field = ";>\\\\\n";
  std::string line;
  const auto end_line = [&](bool is_fold) {
    // A fold after it keeps a backslash that the text itself has at the end of a line.
    if (!is_fold && ends_in_backslash(line)) {
      field += ">" + line + "\\\n";
      line.clear();
    }
    field += ">" + line + (is_fold ? "\\\n" : "\n");
    line.clear();
  };
  for (const char c : text) {
    if (c == '\n') {
      end_line(false);
    } else {
      if (line.size() >= width) end_line(true);
      line += c;
    }
  }
  end_line(false);
  return field + ";";
}

std::string quoted(const std::string& text) {
  // What a reader would take for a text field that is folded is written as one.
  const bool looks_folded = ends_in_backslash(text.substr(0, text.find('\n')));
  const bool needs_folding = has_long_line(text) || looks_folded || text.find("\n;") != std::string::npos;
  return needs_folding ? folded(text) : gemmi::cif::quote(text);
}

}  // namespace

CifOutput::CifOutput(const std::string& block) : block_(std::make_unique<gemmi::cif::Block>(block)) {}

CifOutput::~CifOutput() = default;

void CifOutput::pair(std::string_view tag, const std::string& text) {
  block_->set_pair(std::string(tag), quoted(text));
}

void CifOutput::number(std::string_view tag, const std::string& number) {
  block_->set_pair(std::string(tag), number);
}

void CifOutput::loop(const std::vector<std::string_view>& tags,
                     const std::vector<std::vector<std::string>>& rows) {
  gemmi::cif::Loop& loop = block_->init_loop("", std::vector<std::string>(tags.begin(), tags.end()));
  loop.values.reserve(tags.size() * rows.size());
  for (const std::vector<std::string>& row : rows) {
    for (const std::string& text : row) loop.values.push_back(text.empty() ? "?" : quoted(text));
  }
}

std::string CifOutput::text() const {
  std::ostringstream os;
  gemmi::cif::write_cif_block_to_stream(os, *block_, gemmi::cif::Style::NoBlankLines);
  return os.str();
}
