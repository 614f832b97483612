#include <exchange/cif_reader.h>
#include <exchange/entry_json.h>
#include <fmt/format.h>

#include <algorithm>
#include <deque>
#include <string>
#include <utility>

#include "exchange/cif/block_kind.h"
#include "exchange/cif/components.h"
#include "exchange/cif/document.h"
#include "exchange/cif/own_tags.h"
#include "exchange/cif/readable_text.h"
#include "exchange/cif/tags.h"
#include "exchange/cif/values.h"
#include "exchange/cif/version_two.h"

namespace {

using Entry = CrystalStructureImmediateDatabaseEntry;

std::string name_of_byte(unsigned char byte) {
  switch (byte) {
    case 0x00:
      return "0x00 (NUL)";
    case 0x1A:
      return "0x1A (Ctrl-Z)";
    case 0x1B:
      return "0x1B (Escape)";
    default:
      return fmt::format("0x{:02X}", byte);
  }
}

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

// One line end for all, and no byte-order mark, so that lines count alike everywhere.
std::string with_line_feeds(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\r') {
      result += text[i];
    } else if (i + 1 == text.size() || text[i + 1] != '\n') {
      result += '\n';
    }
  }
  return result;
}

// Where a byte of with_line_feeds() is in the text it was made from.
std::size_t original_offset(std::string_view original, std::size_t offset) {
  std::size_t made = 0;
  for (std::size_t i = 0; i < original.size(); ++i) {
    const bool goes = original[i] == '\r' && i + 1 < original.size() && original[i + 1] == '\n';
    if (goes) continue;
    if (made == offset) return i;
    ++made;
  }
  return original.size();
}

// Why a text has no blocks at all; empty when it may have some.
std::string reason_for_no_block(std::string_view text) {
  bool has_comment = false;
  bool in_comment = false;
  for (const char c : text) {
    const bool is_blank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
    if (in_comment) {
      in_comment = c != '\r' && c != '\n';
    } else if (c == '#') {
      has_comment = in_comment = true;
    } else if (!is_blank) {
      return "";
    }
  }
  return has_comment ? "the file holds only comments" : "the file is empty";
}

bool is_utf_16(std::string_view text) {
  return text.substr(0, 2) == "\xFF\xFE" || text.substr(0, 2) == "\xFE\xFF";
}

}  // namespace

class CifReader::Impl {
 public:
  Impl(std::string_view text, const ReaderOptions& options) : original_(text), options_(options) {}

  std::optional<ImportResult> next() {
    if (!is_open_) open();
    while (results_.empty() && region_ < regions_.size()) read_region(region_++);
    if (results_.empty() && !is_at_end_) end();
    if (results_.empty()) return std::nullopt;
    ImportResult result = std::move(results_.front());
    results_.pop_front();
    return result;
  }

 private:
  // The blocks of a file that are kept from its first reading to its end.
  struct Kept {
    std::size_t region = 0;
    CifDocument document;
    std::deque<SharedBlock> blocks;
  };

  void open() {
    is_open_ = true;
    text_ = original_;
    if (text_.substr(0, byte_order_mark.size()) == byte_order_mark)
      text_.remove_prefix(byte_order_mark.size());
    if (const std::string reason = reason_for_no_block(text_); !reason.empty()) {
      fail({1, 1, "", reason, ""});
      return;
    }
    if (is_utf_16(text_)) {
      fail({1, 1, "", "the text is UTF-16, and CIF is ASCII or UTF-8", "convert it to UTF-8"});
      return;
    }
    if (text_.find('\r') != std::string_view::npos) {
      converted_ = with_line_feeds(text_);
      text_ = converted_;
    }
    if (const auto fault = value_of_cif_2(text_)) {
      fail(*fault);
      return;
    }
    regions_ = cif_regions(text_);
    find_shared_blocks();
  }

  void find_shared_blocks() {
    const auto is_empty = [](const CifRegion& region) {
      return region.contents == CifRegion::neither_cell_nor_atoms;
    };
    if (std::all_of(regions_.begin(), regions_.end(), is_empty)) return;
    for (std::size_t region = 0; region < regions_.size(); ++region) {
      if (regions_[region].contents == CifRegion::cell) {
        ++structure_count_;
      } else {
        look_into(region);
      }
    }
  }

  void look_into(std::size_t region) {
    try {
      Kept& kept = kept_.emplace_back();
      kept.region = region;
      kept.document.read(text_, regions_[region]);
      for (const CifBlock& block : kept.document.blocks()) {
        const CifBlockKind kind = kind_of(block);
        if (kind == CifBlockKind::structure) ++structure_count_;
        if (kind == CifBlockKind::shared && says_anything(block)) kept.blocks.push_back({&block, false});
      }
    } catch (const CifError&) {
      // It is told when its turn comes.
    }
    if (kept_.back().blocks.empty()) kept_.pop_back();
  }

  void read_region(std::size_t region) {
    try {
      document_.read(text_, regions_[region]);
      for (const CifBlock& block : document_.blocks()) read_block(region, block);
    } catch (const CifError& error) {
      fail(error.fault);
    }
  }

  void read_block(std::size_t region, const CifBlock& block) {
    const CifBlockKind kind = kind_of(block);
    if (kind == CifBlockKind::structure) {
      results_.push_back(entry_of(region, block));
    } else if (kind != CifBlockKind::shared || !is_kept(region, block)) {
      results_.push_back(skipped(region, block, kind));
    }
  }

  bool is_kept(std::size_t region, const CifBlock& block) const {
    for (const Kept& kept : kept_) {
      if (kept.region != region) continue;
      for (const SharedBlock& shared : kept.blocks) {
        if (shared.block->name() == block.name()) return true;
      }
    }
    return false;
  }

  ImportResult skipped(std::size_t region, const CifBlock& block, CifBlockKind kind) const {
    ImportResult result;
    result.status = ImportResult::skipped;
    result.block = block.name();
    result.line = block.first_line() != 0 ? block.first_line() : regions_[region].line;
    result.reason = reason_for_no_entry(kind);
    return result;
  }

  // After the last structure: the shared blocks that no structure has taken a value from.
  void end() {
    is_at_end_ = true;
    for (const Kept& kept : kept_) {
      for (const SharedBlock& shared : kept.blocks) {
        if (!shared.is_used) results_.push_back(skipped(kept.region, *shared.block, CifBlockKind::shared));
      }
    }
  }

  // Those before the structure, the nearest first, then those after it.
  std::vector<SharedBlock*> shared_with(std::size_t region) {
    std::vector<SharedBlock*> before;
    std::vector<SharedBlock*> after;
    for (Kept& kept : kept_) {
      for (SharedBlock& shared : kept.blocks) (kept.region <= region ? before : after).push_back(&shared);
    }
    std::reverse(before.begin(), before.end());
    before.insert(before.end(), after.begin(), after.end());
    return before;
  }

  ImportResult entry_of(std::size_t region, const CifBlock& block) {
    ImportResult result;
    result.block = block.name();
    result.line = block.first_line();
    const std::vector<SharedBlock*> shared = shared_with(region);
    const CifValues values(block, shared, result.warnings);
    const CifSource source(values, result);
    const DatabaseCodes codes = database_codes_of(source);
    result.identifier = identifier_of(values, codes);
    const THandle<Publication> publication(new Publication(publication_of(source)));
    const THandle<ChemicalInfo> chemical_info(new ChemicalInfo(chemical_info_of(source)));
    const THandle<CrystalInfo> crystal_info(new CrystalInfo(crystal_info_of(source)));
    const THandle<ExperimentalInfo> experimental_info(new ExperimentalInfo(experimental_info_of(source)));
    const THandle<EditorsInfo> editors_info(new EditorsInfo(editors_info_of(source)));
    const THandle<DepositionInfo> deposition_info(new DepositionInfo(deposition_info_of(source, codes)));
    const THandle<Cell> cell(new Cell(cell_of(source)));
    const std::vector<THandle<Atom>> atoms = atoms_of(source, chemical_info->formula);
    const THandle<CrystalMaker> crystal_maker(new CrystalMaker(cell, atoms));
    if (atoms.empty() && !block.column(static_cast<std::size_t>(tag("_atom_site_label")))) {
      editors_info->category = EditorsInfo::unit_cell_only;
      source.warn(result.line, "a cell without atoms");
    }
    if (cell->a() == 0.0 && cell->b() == 0.0 && cell->c() == 0.0)
      source.warn(result.line, "atoms without a cell");
    result.entry = THandle<Entry>(
        new Entry(DatabaseEntryIdentifier(result.identifier), crystal_maker, cell, publication,
                  experimental_info, editors_info, chemical_info, crystal_info, THandle<ChemicalDiagram>(),
                  THandle<ConnectivityInfo>(new ConnectivityInfo), THandle<CrystalDiagramMatch>(),
                  THandle<ConnectivityDiagramMatch>(), THandle<CrystalConnectivityMatch>(),
                  THandle<CrossReferenceInfo>(new CrossReferenceInfo), deposition_info,
                  disorder_selectors_of(source, atoms), published_geometry_of(source, atoms)));
    take_own_tags(block, result);
    if (options_.list_not_kept) list_not_kept(block, shared, result);
    return result;
  }

  // What is under tags of our own prefix is exact: it replaces what the tags of CIF say.
  void take_own_tags(const CifBlock& block, ImportResult& result) const {
    nlohmann::ordered_json json;
    for (const CifOtherTag& other : block.other_tags()) {
      if (!is_own_tag(other.tag) || other.column.count != 1) continue;
      if (json.is_null()) json = entry_json(*result.entry);
      const std::string raw(other.column[0]);
      if (!put_own_tag(std::string(other.tag), own_tag_value(cif_string(raw)), json))
        result.warnings.push_back({other.column.line, "unknown tag " + std::string(other.tag)});
    }
    if (json.is_null()) return;
    try {
      JsonEntry read = entry_from_json(json);
      result.entry = read.entry;
      const DatabaseEntryIdentifier identifier = result.entry->identifier();
      if (options_.identifier_from == ReaderOptions::code) result.identifier = identifier.text();
      result.entry->set_identifier(DatabaseEntryIdentifier(result.identifier));
      for (const std::string& name : read.unknown)
        result.warnings.push_back({result.line, "unknown field " + name + " under a tag of our own"});
    } catch (const JsonEntryError& error) {
      result.warnings.push_back({result.line, std::string("tags of our own are not read: ") + error.what()});
    }
  }

  // A code of the whole file names its one structure only.
  std::string identifier_of(const CifValues& values, const DatabaseCodes& codes) const {
    if (options_.identifier_from == ReaderOptions::file) return options_.file_stem;
    if (options_.identifier_from == ReaderOptions::code) {
      const bool is_own = structure_count_ <= 1;
      if (!codes.cod.empty() && (is_own || values.own_first(field("cod_code")))) return "C" + codes.cod;
      if (!codes.amcsd.empty() && (is_own || values.own_first(field("amcsd_code")))) return "A" + codes.amcsd;
    }
    const std::string name = values.own().name();
    return name.empty() ? options_.file_stem : name;
  }

  static void list_not_kept(const CifBlock& block, const std::vector<SharedBlock*>& shared,
                            ImportResult& result) {
    add_tags(block, result.not_kept);
    for (const SharedBlock* const other : shared) {
      if (other->is_used) add_tags(*other->block, result.not_kept);
    }
  }

  static void add_tags(const CifBlock& block, std::vector<std::string>& tags) {
    const std::size_t own = tags.size();
    for (const CifOtherTag& other : block.other_tags()) {
      if (is_own_tag(other.tag) || !other.column.has_value()) continue;
      const auto end = tags.begin() + static_cast<std::ptrdiff_t>(own);
      if (std::find(tags.begin(), end, other.tag) == end) tags.emplace_back(other.tag);
    }
  }

  // Nothing after it is read.
  void fail(const CifFault& fault) {
    ImportResult result;
    result.status = ImportResult::error;
    result.block = fault.block;
    result.line = fault.line;
    result.column = fault.column;
    result.reason = fault.reason;
    result.hint = fault.hint;
    if (fault.stray != CifFault::no_stray_byte) {
      const std::size_t mark = original_.size() - without_mark().size();
      const std::size_t offset =
          mark + (converted_.empty() ? fault.stray : original_offset(without_mark(), fault.stray));
      result.reason = fmt::format("stray byte {} at offset {}",
                                  name_of_byte(static_cast<unsigned char>(original_[offset])), offset);
    }
    results_.push_back(std::move(result));
    region_ = regions_.size();
    is_at_end_ = true;
  }

  std::string_view without_mark() const {
    const bool has_mark = original_.substr(0, byte_order_mark.size()) == byte_order_mark;
    return original_.substr(has_mark ? byte_order_mark.size() : 0);
  }

  std::string_view original_;
  ReaderOptions options_;
  std::string converted_;
  std::string_view text_;
  std::vector<CifRegion> regions_;
  std::size_t structure_count_ = 0;
  CifDocument document_;
  std::deque<Kept> kept_;
  std::deque<ImportResult> results_;
  std::size_t region_ = 0;
  bool is_open_ = false;
  bool is_at_end_ = false;
};

EntryReader::~EntryReader() = default;

CifReader::CifReader(std::string_view text, const ReaderOptions& options)
    : impl_(std::make_unique<Impl>(text, options)) {}

CifReader::~CifReader() = default;

std::optional<ImportResult> CifReader::next() {
  return impl_->next();
}

std::vector<ImportResult> read_cif(std::string_view text, const ReaderOptions& options) {
  CifReader reader(text, options);
  std::vector<ImportResult> results;
  while (auto result = reader.next()) results.push_back(std::move(*result));
  return results;
}
