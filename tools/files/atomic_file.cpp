#include "tools/files/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "tools/files/end_of_links.h"
#include "tools/messages/tool_error.h"
#include "tools/output/standard_output.h"

namespace {

// The names of the temporaries that stand, where a signal handler can read them: plain memory, no locks.
struct Temporary {
  std::atomic<bool> exists = false;
  std::array<char, PATH_MAX> name = {};
};
std::array<Temporary, 4> temporaries;

void remember(const std::string& name) {
  for (Temporary& temporary : temporaries) {
    if (temporary.exists || name.size() >= temporary.name.size()) continue;
    std::memcpy(temporary.name.data(), name.c_str(), name.size() + 1);
    temporary.exists = true;
    return;
  }
}

void forget(const std::string& name) {
  for (Temporary& temporary : temporaries) {
    if (temporary.exists && name == temporary.name.data()) temporary.exists = false;
  }
}

extern "C" void remove_temporaries_and_end(int signal) {
  for (const Temporary& temporary : temporaries) {
    if (temporary.exists) ::unlink(temporary.name.data());
  }
  // The handler was installed for one delivery: this one ends the process.
  ::raise(signal);
}

constexpr std::array stop_signals = {SIGINT, SIGTERM, SIGHUP};

// No stop signal arrives while one lives, so that a temporary is never on the disk but not remembered.
class SignalsHeldBack {
 public:
  SignalsHeldBack() {
    sigset_t held;
    sigemptyset(&held);
    for (const int signal : stop_signals) sigaddset(&held, signal);
    sigprocmask(SIG_BLOCK, &held, &before_);
  }
  ~SignalsHeldBack() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  SignalsHeldBack(const SignalsHeldBack&) = delete;
  SignalsHeldBack& operator=(const SignalsHeldBack&) = delete;

 private:
  sigset_t before_;
};

// What new files may be, by the mask of the process.
mode_t permissions_of_new_files() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

std::string folder_of(const std::string& path) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  return folder.empty() ? "." : folder;
}

}  // namespace

AtomicFile::AtomicFile(const std::string& target, Streams streams)
    : name_(target == "-" ? "standard output" : target), target_(target == "-" ? "-" : end_of_links(target)) {
  struct stat old_file = {};
  const bool replaces = target_ != "-" && ::stat(target_.c_str(), &old_file) == 0;
  if (replaces && S_ISDIR(old_file.st_mode)) throw system_error(name_, "write", EISDIR);
  if (target_ == "-" || (replaces && !S_ISREG(old_file.st_mode))) {
    open_stream(streams);
    return;
  }
  temporary_ = folder_of(target_) + "/.dbentry-XXXXXX";
  const SignalsHeldBack held;
  const int descriptor = ::mkostemp(temporary_.data(), O_CLOEXEC);
  if (descriptor < 0) throw system_error(name_, "write", errno);
  remember(temporary_);
  ::fchmod(descriptor, replaces ? old_file.st_mode & 07777 : permissions_of_new_files());
  stream_ = ::fdopen(descriptor, "wb");
  if (stream_ == nullptr) {
    const int reason = errno;
    ::close(descriptor);
    abandon();
    throw system_error(name_, "write", reason);
  }
  enlarge_buffer();
}

// An entry is larger than the buffer that a stream has of its own.
void AtomicFile::enlarge_buffer() {
  constexpr std::size_t size = 1 << 17;
  buffer_ = std::unique_ptr<char[]>(new char[size]);
  std::setvbuf(stream_, buffer_.get(), _IOFBF, size);
}

AtomicFile::~AtomicFile() {
  abandon();
}

void AtomicFile::open_stream(Streams streams) {
  if (target_ == "-") {
    const int descriptor = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    if (descriptor < 0) throw system_error(name_, "write", errno);
    stream_ = ::fdopen(descriptor, "wb");
  } else {
    stream_ = std::fopen(target_.c_str(), "wb");
  }
  if (stream_ == nullptr) throw system_error(name_, "write", errno);
  if (streams == Streams::direct) return;
  held_for_ = stream_;
  stream_ = std::tmpfile();
  if (stream_ == nullptr) throw system_error("a temporary file for " + name_, "make", errno);
}

void AtomicFile::write(std::string_view bytes) {
  errno = 0;
  if (std::fwrite(bytes.data(), 1, bytes.size(), stream_) != bytes.size()) fail_to_write();
}

void AtomicFile::fail_to_write() const {
  if (errno == EPIPE && target_ == "-") throw ClosedPipe();
  throw system_error(name_, "write", errno);
}

void AtomicFile::copy_held() {
  std::rewind(stream_);
  std::array<char, 1 << 16> buffer;
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), stream_)) {
    if (std::fwrite(buffer.data(), 1, count, held_for_) != count) fail_to_write();
  }
  if (std::ferror(stream_) != 0) throw system_error("the temporary file for " + name_, "read", errno);
  std::fclose(stream_);
  stream_ = held_for_;
  held_for_ = nullptr;
}

long AtomicFile::commit() {
  errno = 0;
  if (std::fflush(stream_) != 0 || std::ferror(stream_) != 0) fail_to_write();
  if (held_for_ != nullptr) {
    copy_held();
    if (std::fflush(stream_) != 0) fail_to_write();
  }
  const long size = std::ftell(stream_);
  // Pipes and devices have nothing to be handed to the disk.
  if (!temporary_.empty() && ::fsync(::fileno(stream_)) != 0) throw system_error(name_, "write", errno);
  FILE* const stream = stream_;
  stream_ = nullptr;
  if (std::fclose(stream) != 0) fail_to_write();
  if (temporary_.empty()) return size;
  const SignalsHeldBack held;
  if (std::rename(temporary_.c_str(), target_.c_str()) != 0) throw system_error(name_, "replace", errno);
  forget(temporary_);
  temporary_.clear();
  // The new name, too, is to survive a power failure; a folder that cannot be synchronised is no reason to
  // call the file unwritten.
  const int folder = ::open(folder_of(target_).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    ::fsync(folder);
    ::close(folder);
  }
  return size;
}

void AtomicFile::abandon() noexcept {
  if (stream_ != nullptr) std::fclose(stream_);
  stream_ = nullptr;
  if (held_for_ != nullptr) std::fclose(held_for_);
  held_for_ = nullptr;
  if (temporary_.empty()) return;
  const SignalsHeldBack held;
  ::unlink(temporary_.c_str());
  forget(temporary_);
  temporary_.clear();
}

void prepare_signals() {
  struct sigaction action = {};
  action.sa_handler = remove_temporaries_and_end;
  action.sa_flags = static_cast<int>(SA_RESETHAND);
  for (const int signal : stop_signals) {
    struct sigaction before = {};
    ::sigaction(signal, nullptr, &before);
    // Started with the signal ignored (nohup): it stays ignored.
    if (before.sa_handler != SIG_IGN) ::sigaction(signal, &action, nullptr);
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}
