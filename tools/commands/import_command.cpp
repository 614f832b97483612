// import: entries of CIF and JSON files and of collections, into an archive or a store.
#include <exchange/cif_reader.h>
#include <exchange/json_reader.h>
#include <fmt/format.h>
#include <fmt/ostream.h>
#include <perception/components.h>

#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <utility>

#include "tools/commands/commands.h"
#include "tools/files/archivable.h"
#include "tools/files/atomic_file.h"
#include "tools/files/collection.h"
#include "tools/files/digest.h"
#include "tools/files/entry_sink.h"
#include "tools/files/file_kind.h"
#include "tools/files/input_files.h"
#include "tools/files/outputs.h"
#include "tools/messages/nearest_name.h"
#include "tools/output/counted.h"
#include "tools/output/progress.h"
#include "tools/output/table_output.h"

namespace {

using Json = nlohmann::ordered_json;

enum class InputKind { cif, json, collection };

InputKind kind_of_input(const std::string& path, FileKind kind, const std::string& from) {
  if (kind == FileKind::store) return InputKind::collection;
  if (from == "json") return InputKind::json;
  if (from == "cif" || path == "-") return InputKind::cif;
  if (kind == FileKind::archive) return InputKind::collection;
  return kind == FileKind::json || is_json_name(path) ? InputKind::json : InputKind::cif;
}

ReaderOptions::IdentifierFrom identifier_source(const std::string& name) {
  static const std::vector<std::pair<std::string, ReaderOptions::IdentifierFrom>> sources = {
      {"code", ReaderOptions::code}, {"name", ReaderOptions::name}, {"file", ReaderOptions::file}};
  if (name.empty()) return ReaderOptions::code;
  std::vector<std::string> names;
  for (const auto& [known, source] : sources) {
    if (known == name) return source;
    names.push_back(known);
  }
  throw ToolError(ExitCode::usage, unknown_name("source of identifiers", name, names));
}

// Identifiers that have been given, and where.
class Identifiers {
 public:
  explicit Identifiers(bool keep_apart) : keep_apart_(keep_apart) {}

  // Gives the place at which the identifier was given before, if it was. Where clashes are kept apart, the
  // identifier gets a suffix instead.
  std::optional<std::string> take(ImportResult& result, const std::string& file) {
    const auto [earlier, is_new] = files_.emplace(result.identifier, file);
    if (is_new) return std::nullopt;
    if (!keep_apart_) return earlier->second;
    int& number = suffixes_[result.identifier];
    if (number == 0) number = 1;
    std::string apart;
    do {
      apart = fmt::format("{}-{}", result.identifier, ++number);
    } while (!files_.emplace(apart, file).second);
    result.identifier = apart;
    result.entry->set_identifier(DatabaseEntryIdentifier(apart));
    return std::nullopt;
  }

 private:
  bool keep_apart_;
  std::map<std::string, std::string> files_;
  std::map<std::string, int> suffixes_;
};

// What came of a piece of a file, not yet told and, of an entry, not yet put.
struct Pending {
  std::string file;
  std::string sha256;
  EntryOrigin origin;
  ImportResult result;
  bool ends_file = false;  // all before it was the last of its file
};

class Import {
 public:
  Import(const ImportOptions& options, Terminal& terminal)
      : options_(options),
        terminal_(terminal),
        id_from_(identifier_source(options.id_from)),
        files_(options.from == "json" ? input_files(options.paths, is_json_name, ".json or .jsonl")
                                      : input_files(options.paths, is_cif_name, ".cif or .mcif")),
        progress_(terminal, files_.size(), "files"),
        identifiers_(!options.id_from.empty()) {
    Outputs outputs(options.force);
    for (const std::string& file : files_) outputs.read(file);
    if (!options.dry_run) {
      outputs.written("-o", options.output, FileKind::archive);
      outputs.changed("--into", options.into);
    }
    outputs.written("--report", options.report, FileKind::json);
    outputs.check();
    if (!options.report.empty()) report_ = std::make_unique<AtomicFile>(options.report);
    if (options.dry_run) return;
    sink_ = options.into.empty()
                ? open_archive_sink(options.output, duplicates_rule(options.on_duplicate, Duplicates::both),
                                    options.strict)
                : open_store_sink(options.into, duplicates_rule(options.on_duplicate, Duplicates::refuse));
  }

  ExitCode run() {
    for (const std::string& file : files_) {
      import_file(file);
      // A store is quicker with many entries in a transaction; an archive does not care.
      if (options_.into.empty()) flush();
      progress_.show(++files_done_);
    }
    flush();
    progress_.clear();
    if (report_ != nullptr) report_->commit();
    const bool is_clean = errors_ + warnings_ + skipped_ == 0;
    const bool nothing_new = entries_ == 0 && files_before_ == 0;
    const bool kept_back = nothing_new || (options_.strict && !is_clean && options_.into.empty());
    std::string written;
    if (sink_ != nullptr && !kept_back) written = sink_->commit();
    const bool out_is_taken = options_.output == "-" || options_.report == "-";
    fmt::print(out_is_taken ? terminal_.messages : terminal_.out,
               "{} from {}, {} not imported, {}, {} skipped{}; {}\n", counted(entries_, "entry", "entries"),
               files(files_.size() - files_without_), files(files_without_),
               counted(warnings_, "warning", "warnings"), counted(skipped_, "block", "blocks"),
               files_before_ == 0 ? "" : fmt::format(", {} as before", files(files_before_)),
               outcome(kept_back, written));
    return errors_ > 0 || nothing_new || (options_.strict && !is_clean) ? ExitCode::problems : ExitCode::done;
  }

 private:
  static std::string files(std::size_t count) { return counted(count, "file", "files"); }

  std::string outcome(bool kept_back, const std::string& written) const {
    if (options_.dry_run) return "nothing is written in a dry run";
    if (!kept_back) return written;
    return fmt::format("{} is left as it was{}", options_.into.empty() ? options_.output : options_.into,
                       entries_ == 0 ? "" : " (--strict)");
  }

  void import_file(const std::string& file) {
    if (options_.strict && !options_.into.empty()) flush();
    const std::size_t errors_before = errors_;
    has_entry_ = false;
    stored_before_ = false;
    try {
      import_file_or_collection(file);
    } catch (const ToolError& error) {
      fail(file, error.what());  // the message begins with the name of the file
    } catch (const std::bad_alloc&) {
      fail(file, file + ": not enough memory");
    }
    if (stored_before_) return;
    if (has_entry_) return;
    ++files_without_;
    if (errors_ == errors_before) ++errors_;
  }

  void import_file_or_collection(const std::string& file) {
    if (is_url(file)) {
      copy_collection(file);
      return;
    }
    std::string bytes;
    InputKind kind = InputKind::cif;
    {
      InputFile input(file);
      kind = kind_of_input(file, input.kind(), options_.from);
      if (kind != InputKind::collection) bytes = input.bytes();
    }
    if (kind == InputKind::collection) {
      copy_collection(file);
    } else {
      read_file(file, kind, std::move(bytes));
    }
  }

  void copy_collection(const std::string& place) {
    for_each_entry_and_origin(place, {}, [&](const THandle<StoredEntry>& entry, const EntryOrigin& origin) {
      ImportResult result;
      result.entry = THandle<StoredEntry>(new StoredEntry(*entry));
      result.identifier = identifier_of(*entry);
      result.block = origin.block;
      add(place, origin, std::move(result));
    });
  }

  void read_file(const std::string& file, InputKind kind, std::string bytes) {
    EntryOrigin origin;
    if (file != "-") origin.file = file;
    if (!options_.into.empty()) {
      Digest digest;
      digest.add(bytes);
      origin.sha256 = digest.text();
      if (file != "-" && sink_ != nullptr && sink_->has_imported(file, origin.sha256)) {
        ++files_before_;
        stored_before_ = true;
        report([&]() -> Json {
          return {{"status", "skipped"}, {"file", file}, {"reason", "the store has its entries already"}};
        });
        return;
      }
    }
    const std::string text = uncompressed(file, std::move(bytes));
    ReaderOptions reader_options;
    reader_options.identifier_from = id_from_;
    reader_options.file_stem = stem_of(file);
    reader_options.list_not_kept = report_ != nullptr;
    const std::unique_ptr<EntryReader> reader = open_reader(kind, text, reader_options);
    const std::size_t faults_before = errors_ + warnings_ + skipped_;
    while (std::optional<ImportResult> result = next_result(*reader, file)) {
      origin.block = result->block;
      add(file, origin, std::move(*result));
    }
    if (origin.sha256.empty() || file == "-") return;
    Pending end;
    end.file = file;
    end.sha256 = origin.sha256;
    end.ends_file = true;
    pending_.push_back(std::move(end));
    if (options_.strict && errors_ + warnings_ + skipped_ > faults_before) keep_back_pending();
  }

  static std::unique_ptr<EntryReader> open_reader(InputKind kind, const std::string& text,
                                                  const ReaderOptions& reader_options) {
    if (kind == InputKind::json) return std::make_unique<JsonReader>(text, reader_options);
    return std::make_unique<CifReader>(text, reader_options);
  }

  std::optional<ImportResult> next_result(EntryReader& reader, const std::string& file) {
    try {
      return reader.next();
    } catch (const std::bad_alloc&) {
      fail(file, file + ": not enough memory");
    } catch (const std::exception& error) {
      fail(file, fmt::format("{}: {}", file, error.what()));
    }
    return std::nullopt;
  }

  // Counts and completes what was found, and keeps it until it is worth a transaction.
  void add(const std::string& file, const EntryOrigin& origin, ImportResult&& result) {
    if (result.status == ImportResult::imported && options_.into.empty()) refuse_null(result);
    if (result.status == ImportResult::imported) {
      complete(file, result);
    } else if (result.status == ImportResult::skipped) {
      ++skipped_;
    } else {
      ++errors_;
    }
    pending_.push_back({file, "", origin, std::move(result), false});
    constexpr std::size_t most_pending = 500;
    if (pending_.size() >= most_pending && !(options_.strict && !options_.into.empty())) flush();
  }

  // Where the entries go into an archive.
  static void refuse_null(ImportResult& result) {
    const std::string reason = why_not_archived(*result.entry);
    if (reason.empty()) return;
    result.status = ImportResult::error;
    result.reason = reason;
    result.hint = "a component that is left out has the values of a new one, and a store takes null";
    result.entry = THandle<StoredEntry>();
  }

  void complete(const std::string& file, ImportResult& result) {
    has_entry_ = true;
    const bool takes_both = options_.into.empty() && options_.on_duplicate.empty();
    if (const auto earlier = identifiers_.take(result, file); earlier && takes_both) {
      result.warnings.push_back({0, fmt::format("the identifier {} was already given to an entry of {}; "
                                                "--id-from code, name or file keeps them apart",
                                                result.identifier, *earlier)});
    }
    if (options_.perceive) perceive(result);
    warnings_ += result.warnings.size();
  }

  static void perceive(ImportResult& result) {
    try {
      PerceivedEntry perceived = perceive_components(*result.entry);
      result.entry = THandle<StoredEntry>(new StoredEntry(perceived.entry));
    } catch (const std::bad_alloc&) {
      throw;
    } catch (const std::exception& error) {
      result.warnings.push_back({0, fmt::format("nothing is perceived: {}", error.what())});
    }
  }

  // With --strict, a store takes nothing of a file that is not clean.
  void keep_back_pending() {
    for (Pending& one : pending_) {
      if (one.result.status != ImportResult::imported || one.ends_file) continue;
      one.result.status = ImportResult::skipped;
      one.result.reason = "its file is not without warnings (--strict)";
      one.result.entry = THandle<StoredEntry>();
    }
    pending_.pop_back();
  }

  // Puts and tells all that is pending.
  void flush() {
    std::vector<EntrySink::Put> puts;
    for (const Pending& one : pending_) {
      if (is_entry(one)) puts.push_back({one.result.entry.get(), one.origin});
    }
    std::vector<PutResult> put;
    if (sink_ != nullptr && !puts.empty()) put = sink_->put_all(puts);
    auto next = put.begin();
    bool all_taken = true;
    std::vector<ImportedFile> whole;  // each transaction waits for the disk
    for (Pending& one : pending_) {
      if (one.ends_file) {
        if (all_taken && sink_ != nullptr) whole.push_back({one.file, one.sha256});
        all_taken = true;
        continue;
      }
      const PutResult result = is_entry(one) && sink_ != nullptr ? *next++ : PutResult::added;
      all_taken = all_taken && result != PutResult::refused && one.result.status != ImportResult::error;
      tell(one, result);
    }
    if (!whole.empty()) sink_->set_imported(whole);
    pending_.clear();
  }

  static bool is_entry(const Pending& one) {
    return !one.ends_file && one.result.status == ImportResult::imported;
  }

  void tell(const Pending& one, PutResult put) {
    const ImportResult& result = one.result;
    const std::string block = result.block.empty() ? "" : fmt::format("data_{}: ", result.block);
    switch (result.status) {
      case ImportResult::imported:
        tell_entry(one, put);
        return;
      case ImportResult::skipped:
        say("{}{}: no entry: {}{}\n", one.file, at(result.line), block, result.reason);
        report([&] { return record_of(one, "skipped", result.reason); });
        return;
      case ImportResult::error:
        say("{}{}{}: error: {}{}\n", one.file, at(result.line), at(result.column), block, result.reason);
        if (!result.hint.empty()) say("  hint: {}\n", result.hint);
        report([&] {
          Json record = record_of(one, "error", result.reason);
          record["column"] = result.column;
          if (!result.hint.empty()) record["hint"] = result.hint;
          return record;
        });
    }
  }

  void tell_entry(const Pending& one, PutResult put) {
    for (const ImportWarning& warning : one.result.warnings) {
      say("{}{}: warning: data_{}: {}\n", one.file, at(warning.line), one.result.block, warning.text);
    }
    if (put == PutResult::refused) {
      ++errors_;
      const std::string reason = fmt::format(
          "another entry {} is there already; --on-duplicate keep or replace says which of the two stays",
          one.result.identifier);
      say("{}{}: error: {}\n", one.file, at(one.result.line), reason);
      report([&] { return record_of(one, "error", reason); });
      return;
    }
    if (put == PutResult::kept) {
      ++skipped_;
      report([&] {
        return record_of(one, "skipped", "another entry of its identifier is kept (--on-duplicate keep)");
      });
      return;
    }
    ++entries_;
    report([&] { return record_of(one, "imported", ""); });
  }

  static std::string at(int number) { return number > 0 ? fmt::format(":{}", number) : ""; }

  template <class... Values>
  void say(fmt::format_string<Values...> text, Values&&... values) {
    progress_.clear();
    fmt::print(terminal_.messages, text, std::forward<Values>(values)...);
  }

  // What is wrong with a whole file.
  void fail(const std::string& file, const std::string& reason) {
    flush();
    ++errors_;
    say("{}\n", reason);
    Pending whole;
    whole.file = file;
    report([&] { return record_of(whole, "error", reason); });
  }

  // The record is only made for a report: it takes as long as the entry itself.
  template <class MakeRecord>
  void report(const MakeRecord& make_record) {
    if (report_ != nullptr) report_->write(json_line(make_record()) + "\n");
  }

  static Json record_of(const Pending& one, const char* status, const std::string& reason) {
    const ImportResult& result = one.result;
    Json warnings = Json::array();
    for (const ImportWarning& warning : result.warnings) {
      warnings.push_back({{"line", warning.line}, {"text", warning.text}});
    }
    Json record = {{"status", status},
                   {"file", one.file},
                   {"block", result.block},
                   {"line", result.line},
                   {"identifier", result.identifier},
                   {"absent", result.absent},
                   {"not_kept", result.not_kept},
                   {"warnings", warnings}};
    if (!reason.empty()) record["reason"] = reason;
    if (result.entry.is_null()) return record;
    const auto crystal_maker = result.entry->crystal_maker();
    const auto cell = result.entry->cell();
    const auto geometry = result.entry->published_geometry();
    record["atoms"] = crystal_maker.is_null() ? 0 : crystal_maker->atoms().size();
    record["symmetry_operators"] = cell.is_null() ? 0 : cell->symmetry_operators()->size();
    record["symmetry_operators_from"] = result.operators_from;
    record["published_bonds"] = geometry.is_null() ? 0 : geometry->bonds->size();
    return record;
  }

  const ImportOptions& options_;
  Terminal& terminal_;
  ReaderOptions::IdentifierFrom id_from_;
  std::vector<std::string> files_;
  Progress progress_;
  Identifiers identifiers_;
  std::unique_ptr<AtomicFile> report_;
  std::unique_ptr<EntrySink> sink_;
  std::vector<Pending> pending_;
  bool has_entry_ = false;      // the file that is being read
  bool stored_before_ = false;  // all of it
  std::size_t files_done_ = 0;
  std::size_t files_without_ = 0;  // an entry
  std::size_t files_before_ = 0;   // whose entries the store had
  std::size_t entries_ = 0;
  std::size_t errors_ = 0;
  std::size_t warnings_ = 0;
  std::size_t skipped_ = 0;
};

}  // namespace

ExitCode import_command(const ImportOptions& options, Terminal& terminal) {
  if (!options.output.empty() && !options.into.empty()) {
    throw ToolError(ExitCode::usage,
                    "import: entries go to an archive (-o) or to a store (--into), not to both");
  }
  if (options.output.empty() && options.into.empty() && !options.dry_run) {
    throw ToolError(ExitCode::usage,
                    "import: -o FILE or --into STORE says where the entries go (or --dry-run that nowhere)");
  }
  if (!options.from.empty() && options.from != "cif" && options.from != "json") {
    throw ToolError(ExitCode::usage, unknown_name("format", options.from, {"cif", "json"}));
  }
  return Import(options, terminal).run();
}
