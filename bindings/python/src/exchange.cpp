// CIF in, JSON out.
#include <exchange/cif_reader.h>
#include <exchange/entry_json.h>

#include <stdexcept>

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

}  // namespace

void bind_exchange(py::module_& module) {
  module.def("_read_cif",
             [](const std::string& text, const std::string& identifier_from, const std::string& file_stem) {
               ReaderOptions options;
               options.file_stem = file_stem;
               if (identifier_from == "name") {
                 options.identifier_from = ReaderOptions::name;
               } else if (identifier_from == "file") {
                 options.identifier_from = ReaderOptions::file;
               } else if (identifier_from != "code") {
                 throw std::invalid_argument("identifier_from is 'code', 'name' or 'file', not '" +
                                             identifier_from + "'");
               }
               std::vector<ImportResult> results;
               {
                 // The entries are this call's own until it ends.
                 const py::gil_scoped_release others_may_run;
                 results = read_cif(text, options);
               }
               py::list list;
               for (const ImportResult& result : results) list.append(plain(result));
               return list;
             });
  module.def("_json", [](const CrystalStructureDatabaseEntry& entry, int indent) {
    // Bytes that are no text become U+FFFD, which JSON cannot do without.
    return Converter<std::string>::to(
        entry_json(entry).dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace));
  });
}
