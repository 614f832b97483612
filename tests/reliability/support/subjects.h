// Everything that reads itself from an archive, with a full example of its bytes, so that one test can go
// through all of it.
//
//   for (const Subject& subject : subjects()) {
//     const auto object = subject.make();
//     read_stream(*object, subject.layout.bytes());
//   }
#pragma once

#include <support/stored_samples.h>

#include <functional>
#include <memory>
#include <ostream>
#include <vector>

#include "memory_stream.h"

// Any object that an archive holds.
class Archived {
 public:
  Archived() = default;
  virtual ~Archived() = default;
  Archived(const Archived&) = delete;
  Archived& operator=(const Archived&) = delete;

  virtual void read(Archive& archive) = 0;
  virtual void write(Archive& archive) const = 0;
  // Writes nothing for those that have no text.
  virtual void print(std::ostream& os) const = 0;
};

struct Subject {
  const char* name;
  Layout layout;
  std::function<std::unique_ptr<Archived>()> make;

  friend std::ostream& operator<<(std::ostream& os, const Subject& subject) { return os << subject.name; }
};

[[nodiscard]] std::vector<Subject> subjects();
// The whole entry, which is also among the subjects.
[[nodiscard]] Subject entry_subject();

// Reads `stream`. False when that ended in an exception of a type that the library documents for a bad
// stream; any other exception passes.
bool reads_whole(Archived& object, const std::string& stream);

// Reads `stream` into a new object. Empty when that ends in a documented state: a documented exception, or an
// object that writes and reads back; and when the object then takes the subject's own bytes as a new one
// does. Otherwise says what is wrong.
[[nodiscard]] std::string problem_with(const Subject& subject, const std::string& stream);
