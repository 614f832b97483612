#include <database_entry/records/journal.h>
#include <database_entry/records/journal_table.h>
#include <utilities/field_list.h>

#include <ostream>
#include <stdexcept>

Journal::Journal(int coden) : coden_(coden) {
  if (coden < 1) throw std::runtime_error("Journal::Journal: Invalid VORN coden.");
  if (state(coden) == unknown) {
    international_coden_ = "Unknown";
    name_ = "Unknown";
  } else {
    const std::string_view line = journal_table::line(coden);
    international_coden_ = journal_table::international_coden(line);
    name_ = journal_table::title(line);
  }
}

int Journal::max_vorn_coden() {
  return journal_table::line_count;
}

int Journal::state(int coden) {
  // The name of the message is what programs know this failure by.
  if (coden < 1) throw std::runtime_error("Journal::discontinued: Invalid VORN coden.");
  if (coden > max_vorn_coden()) return unknown;
  const std::string_view line = journal_table::line(coden);
  if (journal_table::title(line).empty()) return unknown;
  return journal_table::status_flag(line) < 0 ? discontinued : current;
}

void Journal::write(Archive& archive) const {
  write_fields(archive, name_, coden_, international_coden_);
}

void Journal::read(Archive& archive) {
  read_fields(archive, name_, coden_, international_coden_);
}

void Journal::print(std::ostream& os) const {
  os << name_;
}
