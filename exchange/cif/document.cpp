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

namespace rules = gemmi::cif::rules;
using Item = CifDocument::Item;
using Words = CifDocument::Words;

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

// The name of the block that was read last, and the loop, if that was the last item.
std::string_view last_block(const Words& words) {
  for (std::size_t i = words.items.size(); i > 0; --i) {
    if (words.items[i - 1].kind == Item::block) return words.words[words.items[i - 1].first_word];
  }
  return "";
}

CifError syntax_error(const tao::pegtl::parse_error& error, const Words& words, std::string_view text) {
  const tao::pegtl::position& position = error.positions().front();
  const std::size_t place = position.byte;
  CifFault fault;
  fault.line = static_cast<int>(position.line);
  fault.column = static_cast<int>(position.column);
  fault.block = std::string(last_block(words));
  fault.reason = std::string(error.message());
  if (const std::size_t stray = stray_byte(text, place);
      fault.reason == "parse error" && stray != text.npos) {
    fault.stray = stray;
    fault.hint = "outside quotes and text fields only printable ASCII is CIF";
  } else if (fault.reason == "parse error") {
    fault.reason = fmt::format("a tag, loop_ or data_ is expected, not '{}'", word_at(text, place));
    fault.hint = "a value without a tag: a line before it is broken or lost";
  } else if (!fault.reason.empty()) {
    fault.reason[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(fault.reason[0])));
  }
  return CifError(fault);
}

bool same_letters(std::string_view one, std::string_view other) {
  return same_cif_tag(one, other) &&
         std::count(one.begin(), one.end(), '.') == std::count(other.begin(), other.end(), '.');
}

// ---- What the parser does with what it finds

template <class Input>
std::string_view view(const Input& input) {
  return {input.begin(), input.size()};
}

template <class Input>
void add(Words& words, Item::Kind kind, const Input& input) {
  words.items.push_back({kind, static_cast<int>(input.iterator().line), words.words.size(), 0});
}

template <class Rule>
struct Take : tao::pegtl::nothing<Rule> {};

struct TakeWord {
  template <class Input>
  static void apply(const Input& input, Words& words) {
    words.words.push_back(view(input));
  }
};

template <>
struct Take<rules::datablockname> {
  template <class Input>
  static void apply(const Input& input, Words& words) {
    add(words, Item::block, input);
    words.words.push_back(view(input));
    words.in_frame = false;
  }
};
template <>
struct Take<rules::str_global> {
  template <class Input>
  static void apply(const Input& input, Words& words) {
    add(words, Item::block, input);
    words.words.emplace_back();
    words.in_frame = false;
  }
};
template <>
struct Take<rules::framename> {
  template <class Input>
  static void apply(const Input& input, Words& words) {
    add(words, Item::frame, input);
    words.words.push_back(view(input));
    words.in_frame = true;
  }
};
template <>
struct Take<rules::endframe> {
  template <class Input>
  static void apply(const Input& /*input*/, Words& words) {
    words.in_frame = false;
  }
};
template <>
struct Take<rules::item_tag> {
  template <class Input>
  static void apply(const Input& input, Words& words) {
    add(words, words.in_frame ? Item::frame : Item::pair, input);
    words.items.back().tag_count = 1;
    words.words.push_back(view(input));
  }
};
template <>
struct Take<rules::item_value> : TakeWord {};
template <>
struct Take<rules::str_loop> {
  template <class Input>
  static void apply(const Input& input, Words& words) {
    add(words, words.in_frame ? Item::frame : Item::loop, input);
  }
};
template <>
struct Take<rules::loop_tag> {
  template <class Input>
  static void apply(const Input& input, Words& words) {
    ++words.items.back().tag_count;
    words.words.push_back(view(input));
  }
};
template <>
struct Take<rules::loop_value> : TakeWord {};
template <>
struct Take<rules::loop> {
  template <class Input>
  static void apply(const Input& input, Words& words) {
    const Item& loop = words.items.back();
    // A value that no blank follows was noted before the parser went back to where it begins.
    while (words.words.back().data() >= input.end()) words.words.pop_back();
    const std::size_t values = words.words.size() - loop.first_word - loop.tag_count;
    if (values % loop.tag_count == 0) return;
    throw CifError({loop.line, static_cast<int>(input.iterator().column), std::string(last_block(words)),
                    "wrong number of values in the loop",
                    fmt::format("{} values do not fill rows of {} columns: a row is broken or lost", values,
                                loop.tag_count)});
  }
};

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

bool CifColumn::has_value() const {
  for (std::size_t row = 0; row < count; ++row) {
    const std::string_view raw = (*this)[row];
    if (raw.size() != 1 || (raw[0] != '?' && raw[0] != '.')) return true;
  }
  return false;
}

void CifDocument::read(std::string_view text, const CifRegion& region) {
  words_.words.clear();
  words_.items.clear();
  words_.in_frame = false;
  blocks_.clear();
  try {
    tao::pegtl::memory_input<> input(text.data() + region.begin, text.data() + region.end, "", region.begin,
                                     static_cast<std::size_t>(region.line), 1);
    tao::pegtl::parse<rules::file, Take, gemmi::cif::Errors>(input, words_);
  } catch (const tao::pegtl::parse_error& error) {
    throw syntax_error(error, words_, text.substr(0, region.end));
  }
  for (std::size_t begin = 0; begin < words_.items.size();) {
    std::size_t end = begin + 1;
    while (end < words_.items.size() && words_.items[end].kind != Item::block) ++end;
    make_block(begin, end);
    begin = end;
  }
}

// Of the items from that of the block itself to the one before `end`.
void CifDocument::make_block(std::size_t begin, std::size_t end) {
  struct Seen {
    std::uint64_t hash;
    std::string_view tag;
    int line;
  };
  CifBlock& block = blocks_.emplace_back();
  block.name_ = words_.words[words_.items[begin].first_word];
  block.columns_.resize(cif_tag_table_size());
  std::vector<Seen> seen;
  seen.reserve(2 * (end - begin));
  const auto note = [&](std::string_view tag, const CifColumn& column) {
    const std::uint64_t hash = cif_tag_hash(tag);
    seen.push_back({hash, tag, column.line});
    const std::size_t index = cif_tag_index(hash, tag);
    if (index == no_cif_tag) {
      block.others_.push_back({tag, column});
    } else if (!block.columns_[index] || !block.columns_[index].has_value()) {
      block.columns_[index] = column;
    }
  };
  for (std::size_t i = begin + 1; i < end; ++i) {
    const Item& item = words_.items[i];
    if (block.first_line_ == 0) block.first_line_ = item.line;
    block.has_frames_ = block.has_frames_ || item.kind == Item::frame;
    if (item.kind == Item::frame) continue;
    const std::size_t word_end =
        i + 1 < words_.items.size() ? words_.items[i + 1].first_word : words_.words.size();
    const std::string_view* const tags = &words_.words[item.first_word];
    const std::size_t values = word_end - item.first_word - item.tag_count;
    if (item.kind == Item::pair && values == 0) {
      throw CifError({item.line, 1, block.name(), fmt::format("{} has no value", tags[0]),
                      "write '?' for an unknown value"});
    }
    for (std::size_t tag = 0; tag < item.tag_count; ++tag) {
      const bool is_loop = item.kind == Item::loop;
      note(tags[tag], {tags + item.tag_count + tag, item.tag_count, values / item.tag_count, item.line,
                       is_loop ? static_cast<int>(i) : -1});
    }
  }
  std::sort(seen.begin(), seen.end(), [](const Seen& one, const Seen& other) {
    return one.hash != other.hash ? one.hash < other.hash : one.line < other.line;
  });
  for (std::size_t i = 1; i < seen.size(); ++i) {
    if (seen[i].hash != seen[i - 1].hash || !same_letters(seen[i].tag, seen[i - 1].tag)) continue;
    throw CifError(
        {seen[i].line, 1, block.name(), fmt::format("{} occurs twice in the block", seen[i].tag), ""});
  }
}
