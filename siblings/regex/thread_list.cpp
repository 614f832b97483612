#include <regex/thread_list.h>

#include <algorithm>

namespace regex_detail {

ThreadList::ThreadList(const Program& program)
    : program_(&program), seen_(program.instructions.size(), 0), path_tags_(program.plan.tags, unset) {
  threads_.reserve(usual_threads);
  tags_.reserve(usual_threads * program.plan.tags);
  tasks_.reserve(usual_threads);
}

void ThreadList::clear() {
  threads_.clear();
  tags_.clear();
  matched_ = false;
  ++round_;
}

void ThreadList::append(InstructionIndex instruction, const Position* tags) {
  threads_.push_back(instruction);
  tags_.insert(tags_.end(), tags, tags + program_->plan.tags);
  matched_ = program_->instructions[instruction].operation == Instruction::match;
}

void ThreadList::start(Position here, bool at_text_start) {
  if (matched_) return;
  at_text_start_ = at_text_start;
  std::fill(path_tags_.begin(), path_tags_.end(), unset);
  follow(program_->start, path_tags_.data(), here);
  at_text_start_ = false;
}

void ThreadList::step(const ThreadList& before, std::size_t byte, Position here) {
  clear();
  for (std::size_t thread = 0; thread < before.size() && !matched_; ++thread) {
    const Instruction& instruction = program_->instructions[before.instruction(thread)];
    if (instruction.operation == Instruction::bytes && program_->sets[instruction.argument][byte]) {
      follow(instruction.next, before.tags(thread), here);
    }
  }
}

void ThreadList::finish(const ThreadList& before, Position here, bool at_text_start) {
  clear();
  at_text_start_ = at_text_start;
  at_text_end_ = true;
  for (std::size_t thread = 0; thread < before.size() && !matched_; ++thread) {
    follow(before.instruction(thread), before.tags(thread), here);
  }
  at_text_start_ = false;
  at_text_end_ = false;
}

void ThreadList::follow(InstructionIndex first, const Position* tags, Position here) {
  if (tags != path_tags_.data()) std::copy_n(tags, program_->plan.tags, path_tags_.begin());
  tasks_.push_back({first});
  while (!tasks_.empty()) {
    const Task task = tasks_.back();
    tasks_.pop_back();
    if (task.instruction == restore) {
      path_tags_[task.tag] = task.value;
      continue;
    }
    if (matched_ || seen_[task.instruction] == round_) continue;
    seen_[task.instruction] = round_;
    const Instruction& instruction = program_->instructions[task.instruction];
    switch (instruction.operation) {  // uncovered: every operation has its case
      case Instruction::fork:
        tasks_.push_back({instruction.argument});
        tasks_.push_back({instruction.next});
        break;
      case Instruction::tag:
        tasks_.push_back({restore, instruction.argument, path_tags_[instruction.argument]});
        path_tags_[instruction.argument] = here;
        tasks_.push_back({instruction.next});
        break;
      case Instruction::text_start:
        if (at_text_start_) tasks_.push_back({instruction.next});
        break;
      case Instruction::text_end:
        if (at_text_end_) {
          tasks_.push_back({instruction.next});
          break;
        }
        [[fallthrough]];
      case Instruction::bytes:
      case Instruction::match:
        append(task.instruction, path_tags_.data());
        break;
    }
  }
}

}  // namespace regex_detail
