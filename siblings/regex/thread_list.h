// The threads of a search at one position of the text: every way in which a match can still come about, the
// preferred one first, each with the values of its tags (tag_plan.h). Internal: callers want regex/regex.h.
//
// The lists of R. Pike's machine; see R. Cox, Regular expression matching: the virtual machine approach,
// 2009.
#pragma once

#include <regex/program.h>

#include <cstdint>
#include <vector>

namespace regex_detail {

// The value of a tag: a position of the text, or a name for one (tagged_automaton.h).
using Position = std::uint32_t;
inline constexpr Position unset = ~Position{0};

// Two threads at one instruction have the same future, so only the preferred one is kept, and a list is never
// longer than the program. After a thread that has reached the match there is none: it would be less
// preferred.
class ThreadList {
 public:
  explicit ThreadList(const Program& program);

  std::size_t size() const { return threads_.size(); }
  bool empty() const { return threads_.empty(); }
  // Some thread, then the last one, has reached the match.
  bool matched() const { return matched_; }
  InstructionIndex instruction(std::size_t thread) const { return threads_[thread]; }
  Position* tags(std::size_t thread) { return tags_.data() + thread * program_->plan.tags; }
  const Position* tags(std::size_t thread) const { return tags_.data() + thread * program_->plan.tags; }

  void clear();
  // Adds a thread as it is, at an instruction that takes a byte, waits for the end of the text, or is the
  // match.
  void append(InstructionIndex instruction, const Position* tags);
  // Adds what a new attempt leads to that starts at the position `here`.
  void start(Position here, bool at_text_start);
  // Becomes what the threads of `before` lead to when they take this byte; `here` is the position after it.
  void step(const ThreadList& before, std::size_t byte, Position here);
  // Becomes what the threads of `before` lead to when the text ends at their position `here`. That may be its
  // start too.
  void finish(const ThreadList& before, Position here, bool at_text_start);

 private:
  // Work still to be done: follow an instruction, or put an older value back into a tag.
  struct Task {
    InstructionIndex instruction;  // or restore
    std::uint32_t tag = 0;         // to restore
    Position value = unset;
  };
  static constexpr std::size_t usual_threads = 8;
  static constexpr InstructionIndex restore = ~InstructionIndex{0};

  void follow(InstructionIndex first, const Position* tags, Position here);

  const Program* program_;
  std::vector<InstructionIndex> threads_;
  std::vector<Position> tags_;
  std::vector<std::uint32_t> seen_;  // by instruction: the round in which it was last reached
  std::uint32_t round_ = 1;          // cannot overflow: a text has fewer than 2^32 bytes
  std::vector<Task> tasks_;
  std::vector<Position> path_tags_;
  bool matched_ = false;
  bool at_text_start_ = false;
  bool at_text_end_ = false;
};

}  // namespace regex_detail
