#include "exchange/cif/document.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <gemmi/cif.hpp>
#include <set>

#include "exchange/cif/readable_text.h"

namespace {

using gemmi::cif::Block;
using gemmi::cif::Document;
using gemmi::cif::Item;
using gemmi::cif::ItemType;

std::string lower_case(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// One line end for all, and no byte-order mark, so that lines count alike everywhere.
std::string with_line_feeds(const std::string& text) {
  std::string result;
  result.reserve(text.size());
  const std::size_t start = text.compare(0, 3, "\xEF\xBB\xBF") == 0 ? 3 : 0;
  for (std::size_t i = start; i < text.size(); ++i) {
    if (text[i] != '\r') {
      result += text[i];
    } else if (i + 1 == text.size() || text[i + 1] != '\n') {
      result += '\n';
    }
  }
  return result;
}

// What stands at a place of the text, up to the next blank.
std::string word_at(const std::string& text, std::size_t place) {
  constexpr std::size_t longest = 30;
  const std::size_t end = std::min(text.find_first_of(" \t\n", place), place + longest);
  return readable_text(text.substr(place, end - place));
}

CifError syntax_error(const tao::pegtl::parse_error& error, const Document& document,
                      const std::string& text) {
  const tao::pegtl::position& place = error.positions().front();
  std::string reason(error.message());
  std::string hint;
  if (reason == "parse error") {
    reason = fmt::format("a tag, loop_ or data_ is expected, not '{}'", word_at(text, place.byte));
    hint = "a value without a tag: a line before it is broken or lost";
  } else if (!reason.empty()) {
    reason[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(reason[0])));
  }
  const Block* const block = document.blocks.empty() ? nullptr : &document.blocks.back();
  if (reason == "wrong number of values in the loop" && block != nullptr) {
    const gemmi::cif::Loop& loop = block->items.back().loop;
    hint = fmt::format("{} values do not fill rows of {} columns: a row is broken or lost",
                       loop.values.size(), loop.tags.size());
  }
  return CifError({static_cast<int>(place.line), static_cast<int>(place.column),
                   block == nullptr ? "" : block->name, reason, hint});
}

// What the grammar lets pass: tags without a value, and tags that occur twice in a block.
void check_tags(const Block& block) {
  std::set<std::string> seen;
  const auto check_first = [&](const std::string& tag, int line) {
    if (seen.insert(lower_case(tag)).second) return;
    throw CifError({line, 1, block.name, fmt::format("{} stands twice in the block", tag), ""});
  };
  for (const Item& item : block.items) {
    if (item.type == ItemType::Pair) {
      check_first(item.pair[0], item.line_number);
      if (item.pair[1].empty()) {
        throw CifError({item.line_number, 1, block.name, fmt::format("{} has no value", item.pair[0]),
                        "write '?' for an unknown value"});
      }
    } else if (item.type == ItemType::Loop) {
      for (const std::string& tag : item.loop.tags) check_first(tag, item.line_number);
    }
  }
}

Document parsed(const std::string& text) {
  if (text.find_first_not_of(" \t\n") == std::string::npos)
    throw CifError({1, 1, "", "the file is empty", ""});
  Document document;
  try {
    tao::pegtl::memory_input<> input(text, "");
    gemmi::cif::parse_input(document, input);
  } catch (const tao::pegtl::parse_error& error) {
    throw syntax_error(error, document, text);
  }
  for (const Block& block : document.blocks) check_tags(block);
  return document;
}

}  // namespace

std::string cif_string(const std::string& raw) {
  return gemmi::cif::as_string(raw);
}

const std::string& CifBlock::name() const {
  return block_->name;
}

int CifBlock::first_line() const {
  return block_->items.empty() ? 0 : block_->items.front().line_number;
}

bool CifBlock::has_any_value(const char* tag) const {
  return block_->has_any_value(tag);
}

std::vector<CifValue> CifBlock::values(const char* tag) const {
  std::vector<CifValue> values;
  gemmi::cif::Column column = block_->find_values(tag);
  for (const std::string& raw : column) values.push_back({raw, column.item()->line_number});
  return values;
}

std::optional<CifTable> CifBlock::table(const char* prefix, const std::vector<std::string>& columns) const {
  gemmi::cif::Table found = block_->find(prefix, columns);
  if (!found.ok()) return std::nullopt;
  CifTable table;
  if (found.loop_item != nullptr) table.line = found.loop_item->line_number;
  for (const auto row : found) {
    std::vector<std::string>& cells = table.rows.emplace_back();
    for (std::size_t column = 0; column < columns.size(); ++column) {
      cells.push_back(row.has(column) ? row[column] : std::string());
    }
  }
  return table;
}

CifDocument::CifDocument(const std::string& text)
    : document_(std::make_unique<Document>(parsed(with_line_feeds(text)))) {
  for (Block& block : document_->blocks) blocks_.emplace_back(block);
}

CifDocument::~CifDocument() = default;
