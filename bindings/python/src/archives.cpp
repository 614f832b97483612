// Files of entries, one after the other: reading and writing. The class with index and lookup is archives.py.
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "entry_bytes.h"
#include "record.h"

namespace {

using Immediate = CrystalStructureImmediateDatabaseEntry;

struct CloseFile {
  void operator()(FILE* file) const { static_cast<void>(std::fclose(file)); }
};
using File = std::unique_ptr<FILE, CloseFile>;

THandle<Immediate> empty_entry() {
  return THandle<Immediate>(new Immediate(Immediate::from(DatabaseEntryIdentifier(), ComponentHandles())));
}

// The file as the user named it, for errors.
class NamedFile {
 public:
  NamedFile(const py::object& path, const char* mode) {
    const auto bytes = py::reinterpret_steal<py::bytes>([&] {
      PyObject* encoded = nullptr;
      return PyUnicode_FSConverter(path.ptr(), &encoded) != 0 ? encoded : nullptr;
    }());
    if (!bytes) throw py::error_already_set();
    path_ = std::string(bytes);
    file_.reset(std::fopen(path_.c_str(), mode));
    if (file_ == nullptr) {
      PyErr_SetFromErrnoWithFilenameObject(PyExc_OSError, path.ptr());
      throw py::error_already_set();
    }
  }

  [[nodiscard]] FILE* stream() const {
    if (file_ == nullptr) throw py::value_error("the archive is closed");
    return file_.get();
  }
  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] bool is_closed() const { return file_ == nullptr; }
  // Whether everything reached the system.
  bool close() {
    FILE* const file = file_.release();
    return file == nullptr || std::fclose(file) == 0;
  }

 private:
  std::string path_;
  File file_;
};

// Reads entry after entry, and knows where each of those that it came by begins.
class ArchiveReader {
 public:
  explicit ArchiveReader(const py::object& path) : file_(path, "rb"), archive_(file_.stream()) {}

  // How many entries there are. Reads what has not been read yet, without the lock of the interpreter.
  std::size_t size() {
    const py::gil_scoped_release others_may_run;
    while (!is_indexed_) static_cast<void>(next_unknown());
    return offsets_.size();
  }

  THandle<Immediate> entry(std::size_t position) {
    while (position > offsets_.size() && !is_indexed_) static_cast<void>(next_unknown());
    if (position < offsets_.size()) {
      seek(offsets_[position]);
      return read(position);
    }
    if (is_indexed_)
      throw py::index_error("entry " + std::to_string(position) + " of " + std::to_string(offsets_.size()));
    auto entry = next_unknown();
    if (entry.is_null())
      throw py::index_error("entry " + std::to_string(position) + " of " + std::to_string(offsets_.size()));
    return entry;
  }

  // At most so many entries from a position on.
  py::list entries(std::size_t first, std::size_t count) {
    std::vector<THandle<Immediate>> found;
    {
      // The entries are this call's own until it ends.
      const py::gil_scoped_release others_may_run;
      while (first > offsets_.size() && !is_indexed_) static_cast<void>(next_unknown());
      if (first < offsets_.size()) seek(offsets_[first]);
      for (std::size_t i = first; i < first + count; ++i) {
        if (i < offsets_.size()) {
          found.push_back(read(i));
          continue;
        }
        auto entry = is_indexed_ ? THandle<Immediate>() : next_unknown();
        if (entry.is_null()) break;
        found.push_back(entry);
      }
    }
    py::list list(found.size());
    for (std::size_t i = 0; i < found.size(); ++i) list[i] = py::cast(found[i]);
    return list;
  }

  [[nodiscard]] const std::vector<std::string>& identifiers() {
    static_cast<void>(size());
    return identifiers_;
  }

  void close() { file_.close(); }
  [[nodiscard]] bool is_closed() const { return file_.is_closed(); }

 private:
  void seek(off_t offset) {
    if (position_ == offset) return;
    if (fseeko(file_.stream(), offset, SEEK_SET) != 0)
      throw ArchiveError(file_.path() + ": " + std::strerror(errno));
    position_ = offset;
  }

  THandle<Immediate> read(std::size_t position) {
    auto entry = empty_entry();
    try {
      entry->read(archive_);
    } catch (const ArchiveError& error) {
      throw ArchiveError(place(position, *entry) + error.what());
    } catch (const std::invalid_argument& error) {
      throw ArchiveError(place(position, *entry) + error.what());
    }
    // A text takes what is there: that more was wanted is told by the stream alone.
    if (std::feof(file_.stream()) != 0) {
      throw ArchiveError(place(position, *entry) + "the file ends within a text at offset " +
                         std::to_string(ftello(file_.stream())));
    }
    position_ = ftello(file_.stream());
    return entry;
  }

  [[nodiscard]] std::string place(std::size_t position, const Immediate& entry) const {
    const std::string name = entry.identifier().text();
    return file_.path() + ": entry " + std::to_string(position) + (name.empty() ? "" : " (" + name + ")") +
           ": ";
  }

  // The first entry that has not been read yet, or null at the end.
  THandle<Immediate> next_unknown() {
    seek(end_of_known_);
    const int byte = std::fgetc(file_.stream());
    if (byte == EOF) {
      if (std::ferror(file_.stream()) != 0) throw ArchiveError(file_.path() + ": " + std::strerror(errno));
      is_indexed_ = true;
      return THandle<Immediate>();
    }
    std::ungetc(byte, file_.stream());
    auto entry = read(offsets_.size());
    offsets_.push_back(end_of_known_);
    identifiers_.push_back(entry->identifier().text());
    end_of_known_ = position_;
    return entry;
  }

  NamedFile file_;
  Archive archive_;
  std::vector<off_t> offsets_;
  std::vector<std::string> identifiers_;
  off_t end_of_known_ = 0;
  off_t position_ = 0;  // of the stream
  bool is_indexed_ = false;
};

class ArchiveWriter {
 public:
  ArchiveWriter(const py::object& path, const std::string& mode)
      : file_(path, mode.c_str()), archive_(file_.stream()) {}

  void write(const CrystalStructureDatabaseEntry& entry) {
    // An entry that cannot be archived leaves nothing of itself in the file.
    const std::string bytes = archived_bytes([&](Archive& archive) { gathered(entry).write(archive); });
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.stream()) != bytes.size())
      throw ArchiveError(file_.path() + ": " + std::strerror(errno));
  }

  void close() {
    if (file_.is_closed()) return;
    try {
      archive_.flush();
    } catch (...) {
      file_.close();
      throw;
    }
    if (!file_.close()) throw ArchiveError(file_.path() + ": " + std::strerror(errno));
  }

 private:
  static Immediate gathered(const CrystalStructureDatabaseEntry& entry) {
    if (const auto* const immediate = dynamic_cast<const Immediate*>(&entry)) return *immediate;
    ComponentHandles handles;
    for_each_component([&](auto component) {
      if constexpr (component.archived) handles[component] = component.get(entry);
    });
    return Immediate::from(entry.identifier(), handles);
  }

  NamedFile file_;
  Archive archive_;
};

}  // namespace

void bind_archives(py::module_& module) {
  py::class_<ArchiveReader>(module, "_ArchiveReader")
      .def(py::init<const py::object&>())
      .def("size", &ArchiveReader::size)
      .def("entry", &ArchiveReader::entry)
      .def("entries", &ArchiveReader::entries)
      .def("identifiers",
           [](ArchiveReader& self) { return Converter<std::vector<std::string>>::to(self.identifiers()); })
      .def("close", &ArchiveReader::close)
      .def_property_readonly("closed", &ArchiveReader::is_closed);
  py::class_<ArchiveWriter>(module, "_ArchiveWriter")
      .def(py::init<const py::object&, const std::string&>())
      .def("write", &ArchiveWriter::write)
      .def("close", &ArchiveWriter::close);
}
