#include "tools/files/input_files.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <new>
#include <string_view>
#include <utility>

#include "tools/files/collection.h"
#include "tools/messages/tool_error.h"

namespace {

namespace fs = std::filesystem;

std::string lower_case(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// Without ".gz".
fs::path without_compression(const std::string& path) {
  fs::path name = fs::path(path).filename();
  return lower_case(name.extension().string()) == ".gz" ? name.stem() : name;
}

std::vector<std::string> files_below(const std::string& folder, bool (*is_wanted)(const std::string&)) {
  std::vector<std::string> files;
  std::error_code error;
  fs::recursive_directory_iterator place(folder, error);
  for (; !error && place != fs::recursive_directory_iterator(); place.increment(error)) {
    std::error_code no_file;
    if (is_wanted(place->path().string()) && place->is_regular_file(no_file))
      files.push_back(place->path().string());
  }
  if (error) throw system_error(folder, "read the folder", error.value());
  std::sort(files.begin(), files.end());
  return files;
}

// Ends what inflateInit2 began, also when memory runs out.
class Inflation {
 public:
  Inflation() {
    constexpr int gzip_only = 16 + MAX_WBITS;
    if (::inflateInit2(&state, gzip_only) != Z_OK) throw std::bad_alloc();
  }
  ~Inflation() { ::inflateEnd(&state); }
  Inflation(const Inflation&) = delete;
  Inflation& operator=(const Inflation&) = delete;

  z_stream state = {};
};

}  // namespace

bool is_cif_name(const std::string& path) {
  const std::string extension = lower_case(without_compression(path).extension().string());
  return extension == ".cif" || extension == ".mcif";
}

bool is_json_name(const std::string& path) {
  const std::string extension = lower_case(without_compression(path).extension().string());
  return extension == ".json" || extension == ".jsonl";
}

std::string stem_of(const std::string& path) {
  return path == "-" ? "stdin" : without_compression(path).stem().string();
}

std::vector<std::string> input_files(const std::vector<std::string>& paths,
                                     bool (*is_wanted)(const std::string&), const char* wanted) {
  std::vector<std::string> files;
  for (const std::string& path : paths) {
    if (path == "-" || is_url(path)) {
      files.push_back(path);
      continue;
    }
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) throw system_error(path, "open", error ? error.value() : ENOENT);
    if (!fs::is_directory(status)) {
      files.push_back(path);
      continue;
    }
    const std::vector<std::string> below = files_below(path, is_wanted);
    if (below.empty()) {
      throw ToolError(ExitCode::cannot_open, fmt::format("{}: the folder holds no {} file", path, wanted));
    }
    files.insert(files.end(), below.begin(), below.end());
  }
  return files;
}

InputFile::InputFile(const std::string& path)
    : name_(path == "-" ? "standard input" : path),
      descriptor_(path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
  if (descriptor_ < 0) throw system_error(name_, "open", errno);
  struct stat status = {};
  if (path == "-" || ::fstat(descriptor_, &status) != 0 || !S_ISREG(status.st_mode)) return;
  expected_ = static_cast<std::size_t>(status.st_size);
  bytes_.reserve(expected_ + 1);  // one more, by which the end is seen
  read_at_most(longest_beginning);
  kind_ = kind_of_beginning(path, bytes_);
}

InputFile::~InputFile() {
  if (descriptor_ > STDIN_FILENO) ::close(descriptor_);
}

void InputFile::read_at_most(std::size_t size) {
  std::size_t done = bytes_.size();
  bytes_.resize(done + size);
  for (const std::size_t wanted = bytes_.size(); done < wanted && !is_at_end_;) {
    const ssize_t count = ::read(descriptor_, bytes_.data() + done, wanted - done);
    if (count < 0 && errno != EINTR) throw system_error(name_, "read", errno);
    if (count == 0) is_at_end_ = true;
    if (count > 0) done += static_cast<std::size_t>(count);
  }
  bytes_.resize(done);
}

std::string InputFile::bytes() {
  constexpr std::size_t usual_step = 1 << 18;
  while (!is_at_end_) {
    const std::size_t left = expected_ + 1 > bytes_.size() ? expected_ + 1 - bytes_.size() : 0;
    read_at_most(left != 0 && expected_ != 0 ? left : usual_step);
  }
  return std::move(bytes_);
}

std::string uncompressed(const std::string& path, std::string bytes) {
  if (!std::string_view(bytes).starts_with("\x1F\x8B")) return bytes;
  Inflation inflation;
  z_stream& state = inflation.state;
  state.next_in = reinterpret_cast<Bytef*>(bytes.data());
  std::size_t left = bytes.size();
  std::string text;
  std::vector<char> buffer(1 << 18);
  int result = Z_OK;
  while (result != Z_STREAM_END || left > 0 || state.avail_in > 0) {
    if (state.avail_in == 0) {
      state.avail_in = static_cast<uInt>(std::min<std::size_t>(left, 1U << 30U));
      left -= state.avail_in;
    }
    // Parts that were compressed one by one may follow each other.
    if (result == Z_STREAM_END) ::inflateReset(&state);
    state.next_out = reinterpret_cast<Bytef*>(buffer.data());
    state.avail_out = static_cast<uInt>(buffer.size());
    result = ::inflate(&state, Z_NO_FLUSH);
    if (result != Z_OK && result != Z_STREAM_END) {
      throw ToolError(ExitCode::cannot_open,
                      fmt::format("{}: the compressed data are damaged or cut short at byte {} of {}", path,
                                  state.total_in, bytes.size()));
    }
    text.append(buffer.data(), buffer.size() - state.avail_out);
  }
  return text;
}
