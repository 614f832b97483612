#include <database_entry/records/journal.h>
#include <database_entry/records/journal_table.h>
#include <utilities/archiving/field_list.h>

#include <ostream>
#include <stdexcept>
#include <utility>

namespace {

constexpr std::string_view unknown_text = "Unknown";

// The line of a number from 1 on, and whether there is a journal in it.
struct ListLine {
  explicit ListLine(int coden) {
    if (coden > journal_table::line_count) return;
    line = journal_table::line(coden);
    title = journal_table::title(line);
  }
  [[nodiscard]] bool is_known() const { return !title.empty(); }

  std::string_view line = {};
  std::string_view title = {};
};

}  // namespace

Journal::Journal(int coden) : coden_(coden) {
  if (coden < 1) throw std::runtime_error("Journal::Journal: Invalid VORN coden.");
  const ListLine listed(coden);
  international_coden_ = listed.is_known() ? journal_table::international_coden(listed.line) : unknown_text;
  name_ = listed.is_known() ? listed.title : unknown_text;
}

Journal::Journal(int coden, std::string international_coden, std::string name)
    : coden_(coden), international_coden_(std::move(international_coden)), name_(std::move(name)) {}

Journal Journal::from(std::string name, int coden, std::string international_coden) {
  return {coden, std::move(international_coden), std::move(name)};
}

int Journal::max_vorn_coden() {
  return journal_table::line_count;
}

int Journal::state(int coden) {
  // The name of the message is what programs know this failure by.
  if (coden < 1) throw std::runtime_error("Journal::discontinued: Invalid VORN coden.");
  const ListLine listed(coden);
  if (!listed.is_known()) return unknown;
  return journal_table::status_flag(listed.line) < 0 ? discontinued : current;
}

void Journal::write(Archive& archive) const {
  write_fields(archive, *this);
}

void Journal::read(Archive& archive) {
  read_fields(archive, *this);
}

void Journal::print(std::ostream& os) const {
  os << name_;
}
