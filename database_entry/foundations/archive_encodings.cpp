#include <database_entry/foundations/archive_encodings.h>
#include <utilities/archiving/field_list.h>

Archive& operator<<(Archive& archive, const std::string& text) {
  write_fields(archive, text);
  return archive;
}

Archive& operator>>(Archive& archive, std::string& text) {
  read_fields(archive, text);
  return archive;
}

Archive& operator<<(Archive& archive, const std::vector<std::string>& texts) {
  write_fields(archive, texts);
  return archive;
}

Archive& operator>>(Archive& archive, std::vector<std::string>& texts) {
  read_fields(archive, texts);
  return archive;
}
