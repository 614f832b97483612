#include <regex/thread_list.h>

#include <algorithm>

namespace regex_detail {

ThreadList::ThreadList(const Program& program)
    : program_(&program), seen_(program.instructions.size(), 0), path_notes_(program.plan.notes, unset) {
  threads_.reserve(usual_threads);
  notes_.reserve(usual_threads * program.plan.notes);
  tasks_.reserve(usual_threads);
}

void ThreadList::clear() {
  threads_.clear();
  notes_.clear();
  matched_ = false;
  ++round_;
}

void ThreadList::append(InstructionIndex instruction, const Position* notes) {
  threads_.push_back(instruction);
  notes_.insert(notes_.end(), notes, notes + program_->plan.notes);
  matched_ = program_->instructions[instruction].operation == Instruction::match;
}

void ThreadList::start(Position here, bool at_text_start) {
  if (matched_) return;
  at_text_start_ = at_text_start;
  std::fill(path_notes_.begin(), path_notes_.end(), unset);
  follow(program_->start, path_notes_.data(), here);
  at_text_start_ = false;
}

void ThreadList::step(const ThreadList& before, std::size_t byte, Position here) {
  clear();
  for (std::size_t thread = 0; thread < before.size() && !matched_; ++thread) {
    const Instruction& instruction = program_->instructions[before.instruction(thread)];
    if (instruction.operation == Instruction::bytes && program_->sets[instruction.argument][byte]) {
      follow(instruction.next, before.notes(thread), here);
    }
  }
}

void ThreadList::finish(const ThreadList& before, Position here, bool at_text_start) {
  clear();
  at_text_start_ = at_text_start;
  at_text_end_ = true;
  for (std::size_t thread = 0; thread < before.size() && !matched_; ++thread) {
    follow(before.instruction(thread), before.notes(thread), here);
  }
  at_text_start_ = false;
  at_text_end_ = false;
}

void ThreadList::follow(InstructionIndex first, const Position* notes, Position here) {
  if (notes != path_notes_.data()) std::copy_n(notes, program_->plan.notes, path_notes_.begin());
  tasks_.push_back({first});
  while (!tasks_.empty()) {
    const Task task = tasks_.back();
    tasks_.pop_back();
    if (task.instruction == restore) {
      path_notes_[task.note] = task.value;
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
      case Instruction::save:
        tasks_.push_back({restore, instruction.argument, path_notes_[instruction.argument]});
        path_notes_[instruction.argument] = here;
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
        append(task.instruction, path_notes_.data());
        break;
    }
  }
}

}  // namespace regex_detail
