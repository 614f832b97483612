#include "exchange/cif/values.h"

#include <fmt/format.h>

#include <utility>

#include "exchange/cif/readable_text.h"

namespace {

std::string first_of(const std::vector<CifText>& values) {
  return values.front().text;
}

bool same_texts(const std::vector<CifText>& one, const std::vector<CifText>& other) {
  if (one.size() != other.size()) return false;
  for (std::size_t i = 0; i < one.size(); ++i) {
    if (one[i].text != other[i].text) return false;
  }
  return true;
}

}  // namespace

CifValues::CifValues(const CifBlock& own, std::vector<SharedBlock*> shared,
                     std::vector<ImportWarning>& warnings)
    : own_(own), shared_(std::move(shared)), warnings_(warnings) {}

std::string CifValues::plain(std::string_view raw, int line) const {
  if (const auto text = plain_cif_text(raw)) return std::string(*text);
  const std::string text = cif_string(raw);
  if (is_utf8(text)) return one_line(text);
  warnings_.push_back({line, fmt::format("a text is not UTF-8 and is read as ISO 8859-1: '{}'",
                                         one_line(from_latin_1(text)).substr(0, 60))});
  return one_line(from_latin_1(text));
}

std::string CifValues::readable(std::string_view raw, int line) const {
  if (const auto text = plain_cif_text(raw)) return std::string(*text);
  const std::string text = cif_string(raw);
  return is_utf8(text) ? readable_text(text) : readable_text(plain(raw, line));
}

// The values that `found` gives for the first shared block that has any.
template <class Found>
std::vector<CifText> CifValues::shared_values(CifTagRange tags, const Found& found) const {
  std::vector<CifText> values;
  const SharedBlock* giver = nullptr;
  for (SharedBlock* const shared : shared_) {
    std::vector<CifText> others = found(*shared->block);
    if (others.empty()) continue;
    shared->is_used = true;
    if (giver == nullptr) {
      values = std::move(others);
      giver = shared;
    } else if (!same_texts(values, others)) {
      warnings_.push_back(
          {others.front().line, fmt::format("{}: data_{} says '{}', data_{} says '{}'; the first is kept",
                                            cif_tag_rows[tags.begin].tag, giver->block->name(),
                                            first_of(values), shared->block->name(), first_of(others))});
      break;
    }
  }
  return values;
}

std::optional<CifText> CifValues::first(CifTagRange tags) const {
  if (auto value = own_first(tags)) return value;
  if (shared_.empty()) return std::nullopt;
  const auto found = [&](const CifBlock& block) {
    const auto value = CifValues(block, {}, warnings_).own_first(tags);
    return value ? std::vector{*value} : std::vector<CifText>();
  };
  const std::vector<CifText> values = shared_values(tags, found);
  return values.empty() ? std::nullopt : std::optional(values.front());
}

std::optional<CifText> CifValues::own_first(CifTagRange tags) const {
  for (std::size_t tag = tags.begin; tag < tags.end; ++tag) {
    const CifColumn& column = own_.column(tag);
    for (std::size_t row = 0; row < column.count; ++row) {
      std::string text = readable(column[row], column.line);
      if (!text.empty()) return CifText{std::move(text), column.line};
    }
  }
  return std::nullopt;
}

std::vector<CifText> CifValues::all(CifTagRange tags) const {
  const auto all_of = [&](const CifBlock& block) {
    std::vector<CifText> values;
    for (std::size_t tag = tags.begin; tag < tags.end && values.empty(); ++tag) {
      const CifColumn& column = block.column(tag);
      for (std::size_t row = 0; row < column.count; ++row) {
        std::string text = readable(column[row], column.line);
        if (!text.empty()) values.push_back({std::move(text), column.line});
      }
    }
    return values;
  };
  std::vector<CifText> values = all_of(own_);
  return values.empty() && !shared_.empty() ? shared_values(tags, all_of) : values;
}

CifColumn CifValues::column(CifTag tag) const {
  const auto index = static_cast<std::size_t>(tag);
  if (own_.column(index).has_value()) return own_.column(index);
  for (SharedBlock* const shared : shared_) {
    if (!shared->block->column(index).has_value()) continue;
    shared->is_used = true;
    return shared->block->column(index);
  }
  return {};
}

CifColumn CifValues::column_beside(const CifColumn& column, CifTag tag) const {
  const auto index = static_cast<std::size_t>(tag);
  const auto is_beside = [&](const CifColumn& other) {
    return other.count == column.count && other.loop == column.loop && other.count != 0;
  };
  if (is_beside(own_.column(index))) return own_.column(index);
  for (const SharedBlock* const shared : shared_) {
    if (is_beside(shared->block->column(index))) return shared->block->column(index);
  }
  return {};
}
