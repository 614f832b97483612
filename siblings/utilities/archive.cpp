#include <utilities/archive.h>
#include <utilities/archiving/read_cursor.h>
#include <utilities/archiving/write_cursor.h>

#include <cerrno>
#include <system_error>

namespace {

template <class T>
Archive& write_scalar(Archive& archive, T value) {
  archiving::WriteCursor(archive).write_run(value);
  return archive;
}

template <class T>
Archive& read_scalar(Archive& archive, T& value) {
  archiving::ReadCursor(archive).read_run(value);
  return archive;
}

}  // namespace

Archive::Archive(FILE* stream) : stream_(stream), is_file_(archiving::is_file(stream)) {}

Archive& Archive::operator<<(int value) {
  return write_scalar(*this, value);
}
Archive& Archive::operator<<(unsigned int value) {
  return write_scalar(*this, value);
}
Archive& Archive::operator<<(bool value) {
  return write_scalar(*this, value);
}
Archive& Archive::operator<<(double value) {
  return write_scalar(*this, value);
}

Archive& Archive::operator>>(int& value) {
  return read_scalar(*this, value);
}
Archive& Archive::operator>>(bool& value) {
  return read_scalar(*this, value);
}
Archive& Archive::operator>>(double& value) {
  return read_scalar(*this, value);
}

void Archive::flush() {
  errno = 0;
  if (std::fflush(stream_) == 0 && std::ferror(stream_) == 0) return;
  const std::string reason =
      errno == 0 ? "an earlier write was lost" : std::generic_category().message(errno);
  throw ArchiveError("Archive: the stream has failed: " + reason);
}
