// A file that appears whole or not at all.
//
//   AtomicFile file("structures.dbe");
//   Archive archive(file.stream());
//   entry.write(archive);
//   file.commit();                 // now, and only now, structures.dbe is the new file
//
// The bytes go to a temporary name in the folder of the target, are handed to the disk, and the temporary is
// then renamed. Destruction before commit() and the signals of stop_signals() remove the temporary; a process
// that is killed outright may leave it, which disturbs no later one. A symbolic link keeps pointing to its
// target, which is replaced; a target that is no regular file (a pipe, a device) and "-", standard output,
// are written to directly, or, when they are to be held, not before commit().
//
// Fails: ToolError, exit code 4, with the target and the system's reason; the old file stays.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

class AtomicFile {
 public:
  enum class Streams { direct, held };  // what is done with a target that is no regular file

  explicit AtomicFile(const std::string& target, Streams streams = Streams::direct);
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  [[nodiscard]] FILE* stream() const { return stream_; }

  // Throws ToolError, or ClosedPipe when the reader of standard output has gone.
  void write(std::string_view bytes);
  // What a failed write of the stream is called; errno tells the reason.
  [[noreturn]] void fail_to_write() const;

  // Once. Gives the number of bytes in the file; -1 when a pipe does not know.
  long commit();

 private:
  void open_stream(Streams streams);
  void enlarge_buffer();
  void copy_held();
  void abandon() noexcept;

  std::string name_;                // as the caller gave it, for messages
  std::string target_;              // what is replaced: the end of all symbolic links
  std::string temporary_;           // empty when the target is written to directly
  std::unique_ptr<char[]> buffer_;  // of the stream, which it outlives
  FILE* stream_ = nullptr;
  FILE* held_for_ = nullptr;  // where the bytes of a held stream go
};

// Interrupt, termination and hang-up remove the temporaries that stand and then end the process as they
// always do. A closed pipe and a file-size limit become failed writes, which have messages.
void prepare_signals();
