// export: entries of a collection in a format that other programs read.
#include <exchange/cif_writer.h>
#include <exchange/entry_json.h>
#include <exchange/xyz_writer.h>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <array>
#include <memory>
#include <ostream>
#include <set>
#include <sstream>

#include "tools/commands/commands.h"
#include "tools/files/atomic_file.h"
#include "tools/files/collection.h"
#include "tools/files/entry_sink.h"
#include "tools/files/outputs.h"
#include "tools/messages/nearest_name.h"
#include "tools/output/list_columns.h"
#include "tools/output/progress.h"
#include "tools/output/table_output.h"

namespace {

// Takes entries one by one and has a whole file at the end.
class Exporter {
 public:
  Exporter() = default;
  Exporter(const Exporter&) = delete;
  Exporter& operator=(const Exporter&) = delete;
  virtual ~Exporter() = default;

  virtual void add(const StoredEntry& entry) = 0;
  virtual void commit() = 0;
};

class ArchiveExporter : public Exporter {
 public:
  explicit ArchiveExporter(const ExportOptions& options)
      : sink_(open_archive_sink(options.output, Duplicates::both)) {}
  void add(const StoredEntry& entry) override { sink_->put(entry); }
  void commit() override { (void)sink_->commit(); }

 private:
  std::unique_ptr<EntrySink> sink_;
};

// One object a line, or a list of objects.
class JsonExporter : public Exporter {
 public:
  JsonExporter(const ExportOptions& options, bool lines) : file_(options.output), lines_(lines) {}
  void add(const StoredEntry& entry) override {
    if (!lines_) file_.write(count_ == 0 ? "[\n" : ",\n");
    file_.write(json_line(entry_json(entry)) + (lines_ ? "\n" : ""));
    ++count_;
  }
  void commit() override {
    if (!lines_) file_.write(count_ == 0 ? "[]\n" : "\n]\n");
    file_.commit();
  }

 private:
  AtomicFile file_;
  bool lines_;
  std::size_t count_ = 0;
};

class CsvExporter : public Exporter {
 public:
  explicit CsvExporter(const ExportOptions& options)
      : file_(options.output),
        columns_(chosen_columns(options.columns)),
        table_(text_, OutputFormat::csv, headings(columns_)) {}
  void add(const StoredEntry& entry) override {
    table_.add(row_of(columns_, entry));
    hand_over();
  }
  void commit() override {
    table_.finish();
    hand_over();
    file_.commit();
  }

 private:
  void hand_over() {
    file_.write(text_.str());
    text_.str("");
  }

  AtomicFile file_;
  std::ostringstream text_;
  std::vector<ListColumn> columns_;
  TableOutput table_;
};

class CifExporter : public Exporter {
 public:
  explicit CifExporter(const ExportOptions& options) : file_(options.output), writer_(text_) {}
  void add(const StoredEntry& entry) override {
    writer_.write(entry);
    file_.write(text_.str());
    text_.str("");
  }
  void commit() override { file_.commit(); }

 private:
  AtomicFile file_;
  std::ostringstream text_;
  CifWriter writer_;
};

class XyzExporter : public Exporter {
 public:
  explicit XyzExporter(const ExportOptions& options)
      : file_(options.output), which_(options.packed ? XyzAtoms::cell : XyzAtoms::asymmetric_unit) {}
  void add(const StoredEntry& entry) override { file_.write(entry_xyz(entry, which_)); }
  void commit() override { file_.commit(); }

 private:
  AtomicFile file_;
  XyzAtoms which_;
};

struct Format {
  const char* name;
  FileKind kind;
  std::unique_ptr<Exporter> (*open)(const ExportOptions&);
};

constexpr std::array formats = {
    Format{"archive", FileKind::archive,
           [](const ExportOptions& options) -> std::unique_ptr<Exporter> {
             return std::make_unique<ArchiveExporter>(options);
           }},
    Format{"json", FileKind::json,
           [](const ExportOptions& options) -> std::unique_ptr<Exporter> {
             return std::make_unique<JsonExporter>(options, false);
           }},
    Format{"jsonl", FileKind::json,
           [](const ExportOptions& options) -> std::unique_ptr<Exporter> {
             return std::make_unique<JsonExporter>(options, true);
           }},
    Format{"cif", FileKind::cif,
           [](const ExportOptions& options) -> std::unique_ptr<Exporter> {
             return std::make_unique<CifExporter>(options);
           }},
    Format{"xyz", FileKind::xyz,
           [](const ExportOptions& options) -> std::unique_ptr<Exporter> {
             return std::make_unique<XyzExporter>(options);
           }},
    Format{"csv", FileKind::csv,
           [](const ExportOptions& options) -> std::unique_ptr<Exporter> {
             return std::make_unique<CsvExporter>(options);
           }},
};

const Format& format_of(const std::string& name) {
  if (name.empty()) throw ToolError(ExitCode::usage, "export: --to FORMAT says what is written");
  std::vector<std::string> names;
  for (const Format& format : formats) {
    if (format.name == name) return format;
    names.emplace_back(format.name);
  }
  throw ToolError(ExitCode::usage, "export: " + unknown_name("format", name, names));
}

}  // namespace

std::vector<std::string> export_formats() {
  std::vector<std::string> names;
  for (const Format& format : formats) names.emplace_back(format.name);
  return names;
}

ExitCode export_command(const ExportOptions& options, Terminal& terminal) {
  const Format& format = format_of(options.to);
  if (options.packed && format.kind != FileKind::xyz)
    throw ToolError(ExitCode::usage, "export: --packed is for --to xyz only");
  if (!options.columns.empty() && format.kind != FileKind::csv)
    throw ToolError(ExitCode::usage, "export: -c COLUMNS is for --to csv only");
  if (options.output.empty()) throw ToolError(ExitCode::usage, "export: -o FILE says where the entries go");
  EntryQuery query;
  try {
    if (!options.where.empty()) query = EntryQuery::from_text(options.where);
  } catch (const EntryQueryError& error) {
    throw ToolError(ExitCode::usage, fmt::format("--where {}: {}", options.where, error.what()));
  }
  Outputs outputs(options.force);
  outputs.read(options.collection);
  outputs.written("-o", options.output, format.kind);
  outputs.check();
  const auto exporter = format.open(options);
  Progress progress(terminal, 0, "entries");
  std::size_t count = 0;
  for_each_entry_and_origin(options.collection, options.identifiers,
                            [&](const THandle<StoredEntry>& entry, const EntryOrigin& origin) {
                              if (!options.where.empty() && !query.matches(entry_columns(*entry, origin)))
                                return;
                              exporter->add(*entry);
                              progress.show(++count);
                            });
  progress.clear();
  exporter->commit();
  fmt::print(options.output == "-" ? terminal.messages : terminal.out, "{} {} in {}\n", count,
             count == 1 ? "entry" : "entries", options.output == "-" ? "standard output" : options.output);
  return ExitCode::done;
}
