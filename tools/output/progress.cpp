#include "tools/output/progress.h"

#include <fmt/ostream.h>

#include <ostream>

namespace {

constexpr std::chrono::milliseconds shortest_interval(100);

}  // namespace

Progress::Progress(Terminal& terminal, std::size_t total, const std::string& what)
    : terminal_(terminal), total_(total), what_(what), next_update_(Clock::now() + shortest_interval) {}

Progress::~Progress() {
  clear();
}

void Progress::show(std::size_t done) {
  if (!terminal_.messages_are_terminal || Clock::now() < next_update_) return;
  next_update_ = Clock::now() + shortest_interval;
  if (total_ == 0) {
    fmt::print(terminal_.messages, "\r{} {}", done, what_);
  } else {
    fmt::print(terminal_.messages, "\r{}/{} {}", done, total_, what_);
  }
  terminal_.messages.flush();
  line_stands_ = true;
}

void Progress::clear() {
  if (!line_stands_) return;
  terminal_.messages << "\r\x1b[K" << std::flush;
  line_stands_ = false;
}
