// sweep_archive ARCHIVE [ENTRIES [quick]]: damages the entries of a stored archive in every way, ENTRIES of
// them, evenly spaced, or all: every truncation, boundary values at every place where four bytes may be a
// count, a length or an enumeration, and, unless quick, all values of every byte. Each must end in a
// documented state, without a leak, and with memory in proportion.
#include <database_entry/database_entry.h>
#include <reliability/support/heap.h>
#include <reliability/support/subjects.h>
#include <support/damage.h>
#include <support/file_contents.h>

#include <cstdlib>
#include <iostream>

namespace {

constexpr std::size_t heap_per_byte = 32;
constexpr std::size_t heap_base = 1 << 20;

// The bytes of each entry.
std::vector<std::string> entries_of(const std::string& archive_bytes) {
  std::vector<std::string> entries;
  const File stream = stream_of(archive_bytes);
  Archive archive(stream.get());
  for (std::size_t begin = 0; begin < archive_bytes.size();) {
    entry_subject().make()->read(archive);
    const auto end = static_cast<std::size_t>(std::ftell(stream.get()));
    entries.push_back(archive_bytes.substr(begin, end - begin));
    begin = end;
  }
  return entries;
}

class Sweep {
 public:
  explicit Sweep(const std::string& entry) : subject_(entry_subject()) {
    subject_.layout = Layout().raw(entry);
  }

  void run(bool quick) {
    const std::string& whole = subject_.layout.bytes();
    const auto examine = [this](const std::string& stream, const Damage& damage) { take(stream, damage); };
    for_every_truncation(whole, examine);
    for_boundary_values_everywhere(whole, examine);
    if (!quick) for_every_byte_value(whole, examine);
  }
  [[nodiscard]] long streams() const { return streams_; }
  [[nodiscard]] long findings() const { return findings_; }
  // The most bytes of the free store for one byte of a stream, the base left aside.
  [[nodiscard]] double worst_proportion() const { return worst_proportion_; }

 private:
  void take(const std::string& stream, const Damage& damage) {
    ++streams_;
    const std::size_t live = heap::live_bytes();
    heap::start_peak();
    const std::string problem = problem_with(subject_, stream);
    const std::size_t peak = heap::peak_bytes();
    if (peak > heap_base) {
      worst_proportion_ = std::max(
          worst_proportion_, static_cast<double>(peak - heap_base) / static_cast<double>(stream.size()));
    }
    if (!problem.empty()) report(damage, problem);
    if (peak > heap_per_byte * stream.size() + heap_base) report(damage, "memory out of proportion");
    if (heap::live_bytes() - (problem.empty() ? 0 : problem.capacity()) > live) report(damage, "a leak");
  }

  void report(const Damage& damage, const std::string& what) {
    ++findings_;
    std::cout << damage << ": " << what << '\n';
  }

  Subject subject_;
  long streams_ = 0;
  long findings_ = 0;
  double worst_proportion_ = 0;
};

}  // namespace

int main(int count, char** arguments) {
  if (count < 2) return 2;
  const std::vector<std::string> entries = entries_of(contents_of_file(arguments[1]));
  const std::size_t wanted = count > 2 ? static_cast<std::size_t>(std::atol(arguments[2])) : entries.size();
  long streams = 0;
  long findings = 0;
  double worst_proportion = 0;
  const std::size_t swept = std::min(wanted, entries.size());
  for (std::size_t index = 0; index < swept; ++index) {
    Sweep sweep(entries[index * entries.size() / swept]);
    sweep.run(count > 3);
    streams += sweep.streams();
    findings += sweep.findings();
    worst_proportion = std::max(worst_proportion, sweep.worst_proportion());
  }
  std::cout << swept << " of " << entries.size() << " entries, " << streams << " damaged streams, "
            << findings << " findings, at most " << worst_proportion
            << " bytes of memory a byte above the first megabyte\n";
  return findings == 0 && swept > 0 ? 0 : 1;
}
