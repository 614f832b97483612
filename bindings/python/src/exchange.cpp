// CIF and JSON in and out, XYZ out.
#include <exchange/cif_reader.h>
#include <exchange/cif_writer.h>
#include <exchange/entry_json.h>
#include <exchange/json_reader.h>
#include <exchange/xyz_writer.h>

#include <sstream>
#include <stdexcept>
#include <utility>

#include "record.h"

namespace {

py::dict plain(const ImportResult& result) {
  py::dict fields;
  const auto text = [](const std::string& value) { return Converter<std::string>::to(value); };
  fields["status"] = result.status == ImportResult::imported  ? "imported"
                     : result.status == ImportResult::skipped ? "skipped"
                                                              : "error";
  fields["entry"] = py::cast(result.entry);
  fields["identifier"] = text(result.identifier);
  fields["block"] = text(result.block);
  fields["line"] = result.line;
  fields["column"] = result.column;
  fields["reason"] = text(result.reason);
  fields["hint"] = text(result.hint);
  fields["operators_from"] = text(result.operators_from);
  fields["absent"] = Converter<std::vector<std::string>>::to(result.absent);
  fields["not_kept"] = Converter<std::vector<std::string>>::to(result.not_kept);
  py::list warnings;
  for (const ImportWarning& warning : result.warnings)
    warnings.append(py::make_tuple(warning.line, text(warning.text)));
  fields["warnings"] = py::tuple(warnings);
  return fields;
}

ReaderOptions options_of(const std::string& identifier_from, const std::string& file_stem) {
  ReaderOptions options;
  options.file_stem = file_stem;
  if (identifier_from == "name") {
    options.identifier_from = ReaderOptions::name;
  } else if (identifier_from == "file") {
    options.identifier_from = ReaderOptions::file;
  } else if (identifier_from != "code") {
    throw std::invalid_argument("identifier_from is 'code', 'name' or 'file', not '" + identifier_from + "'");
  }
  return options;
}

template <class Reader>
py::list all_results(const std::string& text, const ReaderOptions& options) {
  std::vector<ImportResult> results;
  {
    // The entries are this call's own until it ends.
    const py::gil_scoped_release others_may_run;
    Reader reader(text, options);
    while (auto result = reader.next()) results.push_back(std::move(*result));
  }
  py::list list;
  for (const ImportResult& result : results) list.append(plain(result));
  return list;
}

// Gives the text of entry after entry, with what the first of a file begins with.
class TextWriter {
 public:
  py::bytes write(const CrystalStructureDatabaseEntry& entry) {
    text_.str("");
    writer_.write(entry);
    return py::bytes(text_.str());
  }

 private:
  std::ostringstream text_;
  CifWriter writer_{text_};
};

}  // namespace

void bind_exchange(py::module_& module) {
  module.def("_read_cif",
             [](const std::string& text, const std::string& identifier_from, const std::string& file_stem) {
               return all_results<CifReader>(text, options_of(identifier_from, file_stem));
             });
  module.def("_read_json",
             [](const std::string& text, const std::string& identifier_from, const std::string& file_stem) {
               return all_results<JsonReader>(text, options_of(identifier_from, file_stem));
             });
  py::class_<TextWriter>(module, "_CifWriter").def(py::init<>()).def("write", &TextWriter::write);
  module.def("_entry_from_json", [](const std::string& text) {
    try {
      return entry_from_json(nlohmann::ordered_json::parse(text)).entry;
    } catch (const nlohmann::ordered_json::exception& error) {
      throw std::invalid_argument(std::string("no JSON of an entry: ") + error.what());
    } catch (const JsonEntryError& error) {
      throw std::invalid_argument(error.what());
    }
  });
  module.def("_xyz", [](const CrystalStructureDatabaseEntry& entry, bool cell) {
    return Converter<std::string>::to(entry_xyz(entry, cell ? XyzAtoms::cell : XyzAtoms::asymmetric_unit));
  });
  module.def("_json", [](const CrystalStructureDatabaseEntry& entry, int indent) {
    // Bytes that are no text become U+FFFD, which JSON cannot do without.
    return Converter<std::string>::to(
        entry_json(entry).dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
  });
}
