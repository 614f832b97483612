#include "scale/scale_cases.h"

#include <sys/resource.h>

#include <memory>

#include "storages/archive_cases.h"
#include "storages/storages.h"

namespace {

// Of this process so far, in megabytes. Files in memory do not count.
long peak_memory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

}  // namespace

void add_scale_cases(Suite& suite, const StoredEntries& entries, std::size_t many) {
  const struct {
    const char* name;
    std::shared_ptr<Storage> storage;
  } copies[] = {{"", archive_storage(entries)}, {", bare copy", bare_storage(entries)}};
  const std::size_t repeats = many / entries.size();
  const std::string few_name = std::to_string(entries.size()) + " entries";
  const std::string many_name = std::to_string(repeats * entries.size()) + " entries";
  const long before = peak_memory();
  for (const std::size_t passes : {std::size_t{1}, repeats}) {
    const std::size_t count = passes * entries.size();
    const std::size_t bytes = passes * entries.bytes.size();
    FILE* file = file_in_memory();
    for (const auto& copy : copies) {
      const std::string subject = (passes == 1 ? few_name : many_name) + copy.name;
      const auto write = [storage = copy.storage, file, passes] {
        std::rewind(file);
        for (std::size_t pass = 0; pass < passes; ++pass) storage->write_file(file);
        std::fflush(file);
      };
      const auto read = [storage = copy.storage, file, passes] {
        std::rewind(file);
        for (std::size_t pass = 0; pass < passes; ++pass) storage->read_file(file);
      };
      write();  // every later round finds the pages of the file in place
      read();
      suite.measure("write, per entry of a small and a large file", subject, count, bytes, write);
      suite.measure("read, per entry of a small and a large file", subject, count, bytes, read);
    }
  }
  for (const std::string operation : {"write", "read"}) {
    const std::string case_name = operation + ", per entry of a small and a large file";
    suite.compare_with(case_name, many_name);
    suite.expect(case_name, {few_name, Goal::at_most_times, 1.25});
  }
  suite.note("Peak memory of the process before and after writing and reading " + many_name + ": " +
             std::to_string(before) + " MB, " + std::to_string(peak_memory()) + " MB");
}
