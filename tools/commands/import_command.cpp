#include <exchange/cif_reader.h>
#include <fmt/format.h>
#include <fmt/ostream.h>
#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <ostream>

#include "tools/commands/commands.h"
#include "tools/files/atomic_file.h"
#include "tools/files/entry_file.h"
#include "tools/files/entry_sink.h"
#include "tools/files/outputs.h"
#include "tools/output/progress.h"
#include "tools/output/table_output.h"

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

bool is_cif_name(const fs::path& path) {
  std::string extension = path.extension().string();
  for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return extension == ".cif";
}

// All *.cif files below a folder, by name, so that the same folder always gives the same archive.
std::vector<std::string> cif_files_below(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code error;
  fs::recursive_directory_iterator place(folder, error);
  for (; !error && place != fs::recursive_directory_iterator(); place.increment(error)) {
    std::error_code no_file;
    if (is_cif_name(place->path()) && place->is_regular_file(no_file))
      files.push_back(place->path().string());
  }
  if (error) throw system_error(folder, "read the folder", error.value());
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> files_of(const std::vector<std::string>& paths) {
  std::vector<std::string> files;
  for (const std::string& path : paths) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) throw system_error(path, "open", error ? error.value() : ENOENT);
    if (!fs::is_directory(status)) {
      files.push_back(path);
      continue;
    }
    const std::vector<std::string> below = cif_files_below(path);
    if (below.empty()) throw ToolError(ExitCode::cannot_open, path + ": the folder holds no .cif file");
    files.insert(files.end(), below.begin(), below.end());
  }
  return files;
}

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};

std::string contents(const std::string& name) {
  errno = 0;
  const std::unique_ptr<FILE, CloseFile> file(std::fopen(name.c_str(), "rb"));
  if (file == nullptr) throw system_error(name, "open", errno);
  std::string text;
  std::vector<char> buffer(1 << 16);
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
    text.append(buffer.data(), count);
  }
  if (std::ferror(file.get()) != 0) throw system_error(name, "read", errno);
  return text;
}

class Import {
 public:
  Import(const ImportOptions& options, Terminal& terminal)
      : options_(options),
        terminal_(terminal),
        files_(files_of(options.paths)),
        progress_(terminal, files_.size(), "files") {
    Outputs outputs(options.force);
    for (const std::string& file : files_) outputs.read(file);
    if (!options.dry_run) outputs.written("-o", options.output, FileKind::archive);
    outputs.written("--report", options.report, FileKind::json);
    outputs.check();
    if (!options.report.empty()) report_ = std::make_unique<AtomicFile>(options.report);
    if (!options.dry_run) output_ = open_archive_sink(options.output, Duplicates::both, options.strict);
  }

  ExitCode run() {
    for (const std::string& file : files_) {
      import_file(file);
      progress_.show(++files_done_);
    }
    progress_.clear();
    if (report_ != nullptr) report_->commit();
    const bool kept_back = entries_ == 0 || (options_.strict && errors_ + warnings_ > 0);
    std::string written;
    if (output_ != nullptr && !kept_back) written = output_->commit();
    const bool out_is_taken = options_.output == "-" || options_.report == "-";
    fmt::print(out_is_taken ? terminal_.messages : terminal_.out,
               "{} entries from {} files, {} files not imported, {} warnings; {}\n", entries_,
               files_.size() - errors_, errors_, warnings_, outcome(kept_back, written));
    return errors_ > 0 || kept_back ? ExitCode::problems : ExitCode::done;
  }

 private:
  std::string outcome(bool kept_back, const std::string& written) const {
    if (options_.dry_run) return "nothing is written in a dry run";
    if (!kept_back) return written;
    return fmt::format("{} is left as it was{}", options_.output, entries_ == 0 ? "" : " (--strict)");
  }

  void import_file(const std::string& file) {
    const std::size_t errors_before = errors_;
    const std::size_t entries_before = entries_;
    std::string text;
    try {
      text = contents(file);
    } catch (const ToolError& error) {
      // The message begins with the name of the file.
      fail(file, 0, 0, "", error.what(), "");
      return;
    } catch (const std::bad_alloc&) {
      fail(file, 0, 0, file, "not enough memory", "");
      return;
    }
    ReaderOptions options;
    options.file_stem = fs::path(file).stem().string();
    CifReader reader(text, options);
    while (std::optional<ImportResult> result = next_result(reader, file)) take_result(file, *result);
    if (entries_ == entries_before && errors_ == errors_before) ++errors_;
  }

  std::optional<ImportResult> next_result(CifReader& reader, const std::string& file) {
    try {
      return reader.next();
    } catch (const std::bad_alloc&) {
      fail(file, 0, 0, file, "not enough memory", "");
    } catch (const std::exception& error) {
      fail(file, 0, 0, file, error.what(), "");
    }
    return std::nullopt;
  }

  void take_result(const std::string& file, ImportResult& result) {
    const std::string block = result.block.empty() ? "" : fmt::format("data_{}: ", result.block);
    switch (result.status) {
      case ImportResult::imported:
        take(file, result);
        break;
      case ImportResult::skipped:
        progress_.clear();
        fmt::print(terminal_.messages, "{}:{}: no entry: {}{}\n", file, result.line, block, result.reason);
        add_to_report({{"status", "skipped"},
                       {"file", file},
                       {"block", result.block},
                       {"line", result.line},
                       {"reason", result.reason}});
        break;
      case ImportResult::error:
        fail(file, result.line, result.column, fmt::format("{}:{}:{}", file, result.line, result.column),
             block + result.reason, result.hint);
        break;
    }
  }

  void fail(const std::string& file, int line, int column, const std::string& place,
            const std::string& reason, const std::string& hint) {
    ++errors_;
    progress_.clear();
    fmt::print(terminal_.messages, "{}{}{}\n", place, place.empty() ? "" : ": error: ", reason);
    if (!hint.empty()) fmt::print(terminal_.messages, "  hint: {}\n", hint);
    Json record = {
        {"status", "error"}, {"file", file}, {"line", line}, {"column", column}, {"reason", reason}};
    if (!hint.empty()) record["hint"] = hint;
    add_to_report(record);
  }

  void take(const std::string& file, ImportResult& imported) {
    const std::string identifier = identifier_of(*imported.entry);
    const auto [earlier, is_new] = files_by_identifier_.emplace(identifier, file);
    if (!is_new) {
      imported.warnings.push_back({0, fmt::format("the identifier {} was already given to an entry of {}",
                                                  identifier, earlier->second)});
    }
    for (const ImportWarning& warning : imported.warnings) {
      ++warnings_;
      progress_.clear();
      const std::string line = warning.line > 0 ? fmt::format(":{}", warning.line) : "";
      fmt::print(terminal_.messages, "{}{}: warning: data_{}: {}\n", file, line, imported.block,
                 warning.text);
    }
    if (output_ != nullptr) output_->put(*imported.entry, {file, imported.block, "", 0});
    ++entries_;
    add_to_report(record_of(file, imported));
  }

  void add_to_report(const Json& record) {
    if (report_ != nullptr) report_->write(json_line(record) + "\n");
  }

  static Json record_of(const std::string& file, const ImportResult& imported) {
    Json warnings = Json::array();
    for (const ImportWarning& warning : imported.warnings) {
      warnings.push_back({{"line", warning.line}, {"text", warning.text}});
    }
    const auto geometry = imported.entry->published_geometry();
    return {{"status", "imported"},
            {"file", file},
            {"line", imported.line},
            {"block", imported.block},
            {"identifier", identifier_of(*imported.entry)},
            {"atoms", imported.entry->crystal_maker()->atoms().size()},
            {"symmetry_operators", imported.entry->cell()->symmetry_operators()->size()},
            {"symmetry_operators_from", imported.operators_from},
            {"published_bonds", geometry.is_null() ? 0 : geometry->bonds->size()},
            {"absent", imported.absent},
            {"not_kept", imported.not_kept},
            {"warnings", warnings}};
  }

  const ImportOptions& options_;
  Terminal& terminal_;
  std::vector<std::string> files_;
  Progress progress_;
  std::unique_ptr<AtomicFile> report_;
  std::unique_ptr<EntrySink> output_;
  std::map<std::string, std::string> files_by_identifier_;
  std::size_t files_done_ = 0;
  std::size_t entries_ = 0;
  std::size_t errors_ = 0;
  std::size_t warnings_ = 0;
};

}  // namespace

ExitCode import_command(const ImportOptions& options, Terminal& terminal) {
  if (options.output.empty() && !options.dry_run) {
    throw ToolError(ExitCode::usage, "import: -o FILE says where the entries go (or --dry-run that nowhere)");
  }
  return Import(options, terminal).run();
}
