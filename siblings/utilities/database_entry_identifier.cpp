#include <utilities/archiving/field_list.h>
#include <utilities/database_entry_identifier.h>

#include <ostream>

void DatabaseEntryIdentifier::write(Archive& archive) const {
  write_fields(archive, text_);
}

void DatabaseEntryIdentifier::read(Archive& archive) {
  read_fields(archive, text_);
}

void DatabaseEntryIdentifier::print(std::ostream& os) const {
  os << text_;
}
