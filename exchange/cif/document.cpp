#include "exchange/cif/document.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <gemmi/cif.hpp>
#include <utility>

#include "exchange/cif/readable_text.h"
#include "exchange/cif/tag_index.h"

namespace {

using gemmi::cif::Block;
using gemmi::cif::Document;
using gemmi::cif::Item;
using gemmi::cif::ItemType;

// Whether the text at `line` begins with `word`, which is in lower case, in letters of either case.
bool begins(const char* line, const char* end, std::string_view word) {
  if (static_cast<std::size_t>(end - line) < word.size()) return false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    const char c = line[i];
    const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c == '.' ? '_' : c;
    if (lower != word[i]) return false;
  }
  return true;
}

bool is_blank(char c) {
  return c == ' ' || c == '\t';
}

// What a line that begins with a tag says of the contents of its block.
CifRegion::Contents contents_told_by(const char* line, const char* end) {
  constexpr std::string_view length = "_cell_length_a";
  if (begins(line, end, length)) {
    const char* value = line + length.size();
    while (value < end && is_blank(*value)) ++value;
    if (value == end) return CifRegion::unclear;
    const bool is_placeholder = (*value == '?' || *value == '.') && (value + 1 == end || is_blank(value[1]));
    return is_placeholder ? CifRegion::neither_cell_nor_atoms : CifRegion::cell;
  }
  return begins(line, end, "_atom_site_fract_x") ? CifRegion::unclear : CifRegion::neither_cell_nor_atoms;
}

// ---- Faults

// What is at a place of the text, up to the next blank.
std::string word_at(std::string_view text, std::size_t place) {
  constexpr std::size_t longest = 30;
  const std::size_t end = std::min(text.find_first_of(" \t\n", place), place + longest);
  return readable_text(std::string(text.substr(place, end - place)));
}

// The first byte of the word that is left where the parser stopped, which no CIF may hold there.
std::size_t stray_byte(std::string_view text, std::size_t place) {
  for (; place < text.size(); ++place) {
    const auto byte = static_cast<unsigned char>(text[place]);
    if (byte == ' ' || byte == '\t' || byte == '\n') break;
    if (byte < 0x20 || byte >= 0x7F) return place;
  }
  return std::string_view::npos;
}

CifError syntax_error(const tao::pegtl::parse_error& error, const Document& document, std::string_view text) {
  const tao::pegtl::position& position = error.positions().front();
  const std::size_t place = position.byte;
  std::string reason(error.message());
  std::string hint;
  const Block* const block = document.blocks.empty() ? nullptr : &document.blocks.back();
  if (const std::size_t stray = stray_byte(text, place); reason == "parse error" && stray != text.npos) {
    CifFault fault = {static_cast<int>(position.line), static_cast<int>(position.column),
                      document.blocks.empty() ? "" : document.blocks.back().name, "",
                      "outside quotes and text fields only printable ASCII is CIF"};
    fault.stray = stray;
    return CifError(fault);
  }
  if (reason == "parse error") {
    reason = fmt::format("a tag, loop_ or data_ is expected, not '{}'", word_at(text, place));
    hint = "a value without a tag: a line before it is broken or lost";
  } else if (!reason.empty()) {
    reason[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(reason[0])));
  }
  if (reason == "wrong number of values in the loop" && block != nullptr) {
    const gemmi::cif::Loop& loop = block->items.back().loop;
    hint = fmt::format("{} values do not fill rows of {} columns: a row is broken or lost",
                       loop.values.size(), loop.tags.size());
  }
  return CifError({static_cast<int>(position.line), static_cast<int>(position.column),
                   block == nullptr ? "" : block->name, reason, hint});
}

bool is_null(const std::string& raw) {
  return raw.size() == 1 && (raw[0] == '?' || raw[0] == '.');
}

bool has_value(const CifColumn& column) {
  for (std::size_t row = 0; row < column.count; ++row) {
    if (!is_null(column[row])) return true;
  }
  return false;
}

bool same_tag(const std::string& one, const std::string& other) {
  return same_cif_tag(one, other) &&
         std::count(one.begin(), one.end(), '.') == std::count(other.begin(), other.end(), '.');
}

// What the grammar lets pass.
void check_no_tag_is_twice(const Block& block, std::vector<std::pair<std::uint64_t, const std::string*>> tags,
                           const std::vector<std::pair<const std::string*, int>>& lines) {
  std::sort(tags.begin(), tags.end());
  const auto equal = [](const auto& one, const auto& other) {
    return one.first == other.first && same_tag(*one.second, *other.second);
  };
  const auto twice = std::adjacent_find(tags.begin(), tags.end(), equal);
  if (twice == tags.end()) return;
  int line = 0;
  const std::string* written = nullptr;
  for (const auto& [tag, line_of_tag] : lines) {
    if (same_tag(*tag, *twice->second)) line = line_of_tag, written = tag;
  }
  throw CifError({line, 1, block.name, fmt::format("{} occurs twice in the block", *written), ""});
}

}  // namespace

std::vector<CifRegion> cif_regions(std::string_view text) {
  std::vector<CifRegion> regions = {{0, text.size(), 1, CifRegion::neither_cell_nor_atoms}};
  bool has_block = false;
  bool in_text_field = false;
  int number = 0;
  const char* const begin = text.data();
  const char* const text_end = begin + text.size();
  for (const char* line = begin; line < text_end;) {
    const void* const feed = std::memchr(line, '\n', static_cast<std::size_t>(text_end - line));
    const char* const end = feed == nullptr ? text_end : static_cast<const char*>(feed);
    ++number;
    const char* word = line;
    if (*line == ';') {
      in_text_field = !in_text_field;
      word = end;
    } else if (in_text_field) {
      word = end;
    }
    while (word < end && is_blank(*word)) ++word;
    if (word < end) {
      switch (*word) {
        case '_': {
          const CifRegion::Contents told = contents_told_by(word, end);
          CifRegion::Contents& contents = regions.back().contents;
          if (contents != CifRegion::cell && told != CifRegion::neither_cell_nor_atoms) contents = told;
          break;
        }
        case 'd':
        case 'D':
        case 'g':
        case 'G':
          if (!begins(word, end, "data_") && !begins(word, end, "global_")) break;
          if (has_block) {
            regions.back().end = static_cast<std::size_t>(line - begin);
            regions.push_back({static_cast<std::size_t>(line - begin), text.size(), number,
                               CifRegion::neither_cell_nor_atoms});
          }
          has_block = true;
          break;
        default:
          break;
      }
    }
    line = end + 1;
  }
  return regions;
}

// ---- Blocks

CifBlock::CifBlock(const Block& block) : block_(&block), columns_(cif_tag_table_size()) {
  std::vector<std::pair<std::uint64_t, const std::string*>> tags;
  std::vector<std::pair<const std::string*, int>> lines;
  const auto note = [&](const std::string& tag, const CifColumn& column) {
    const std::uint64_t hash = cif_tag_hash(tag);
    tags.emplace_back(hash, &tag);
    lines.emplace_back(&tag, column.line);
    const std::size_t index = cif_tag_index(hash, tag);
    if (index == no_cif_tag) {
      take(tag, column);
    } else if (!columns_[index] || !has_value(columns_[index])) {
      columns_[index] = column;
    }
  };
  tags.reserve(2 * block.items.size());
  lines.reserve(2 * block.items.size());
  for (const Item& item : block.items) {
    if (item.type == ItemType::Pair) {
      if (item.pair[1].empty()) {
        throw CifError({item.line_number, 1, block.name, fmt::format("{} has no value", item.pair[0]),
                        "write '?' for an unknown value"});
      }
      note(item.pair[0], {&item.pair[1], 1, 1, item.line_number, nullptr});
    } else if (item.type == ItemType::Loop) {
      const std::size_t width = item.loop.tags.size();
      const std::size_t rows = item.loop.values.size() / width;
      for (std::size_t tag = 0; tag < width; ++tag) {
        note(item.loop.tags[tag],
             {rows == 0 ? nullptr : &item.loop.values[tag], width, rows, item.line_number, &item});
      }
    } else if (item.type == ItemType::Frame) {
      has_frames_ = true;
    }
  }
  check_no_tag_is_twice(block, std::move(tags), lines);
}

void CifBlock::take(const std::string& tag, const CifColumn& column) {
  if (begins(tag.data(), tag.data() + tag.size(), "_dbentry_")) {
    own_.push_back({tag, column});
  } else {
    others_.push_back({&tag, column});
  }
}

const std::string& CifBlock::name() const {
  return block_->name;
}

int CifBlock::first_line() const {
  return block_->items.empty() ? 0 : block_->items.front().line_number;
}

std::vector<std::string> CifBlock::other_tags() const {
  std::vector<std::string> tags;
  for (const Other& other : others_) {
    if (has_value(other.column)) tags.push_back(*other.tag);
  }
  return tags;
}

CifDocument::CifDocument(std::string_view text, const CifRegion& region)
    : document_(std::make_unique<Document>()) {
  try {
    tao::pegtl::memory_input<> input(text.data() + region.begin, text.data() + region.end, "", region.begin,
                                     static_cast<std::size_t>(region.line), 1);
    gemmi::cif::parse_input(*document_, input);
  } catch (const tao::pegtl::parse_error& error) {
    throw syntax_error(error, *document_, text.substr(0, region.end));
  }
  for (const Block& block : document_->blocks) blocks_.emplace_back(block);
}

CifDocument::CifDocument(CifDocument&&) noexcept = default;
CifDocument& CifDocument::operator=(CifDocument&&) noexcept = default;
CifDocument::~CifDocument() = default;
