#include <regex/thread_list.h>

#include <algorithm>

namespace regex_detail {

ThreadList::ThreadList(const Program& program)
    : program_(&program), seen_(program.instructions.size(), 0), path_slots_(program.slots, unset) {}

void ThreadList::clear() {
  threads_.clear();
  slots_.clear();
  matched_ = false;
  if (++round_ == 0) {
    std::fill(seen_.begin(), seen_.end(), 0);
    round_ = 1;
  }
}

void ThreadList::append(InstructionIndex instruction, const SlotValue* slots) {
  threads_.push_back(instruction);
  slots_.insert(slots_.end(), slots, slots + program_->slots);
  matched_ = program_->instructions[instruction].operation == Instruction::match;
}

void ThreadList::start(SlotValue here, bool at_text_start) {
  if (matched_) return;
  at_text_start_ = at_text_start;
  std::fill(path_slots_.begin(), path_slots_.end(), unset);
  follow(program_->start, path_slots_.data(), here);
  at_text_start_ = false;
}

void ThreadList::step(const ThreadList& before, std::size_t byte, SlotValue here) {
  clear();
  for (std::size_t thread = 0; thread < before.size() && !matched_; ++thread) {
    const Instruction& instruction = program_->instructions[before.instruction(thread)];
    if (instruction.operation == Instruction::bytes && program_->sets[instruction.argument][byte]) {
      follow(instruction.next, before.slots(thread), here);
    }
  }
}

void ThreadList::finish(const ThreadList& before, SlotValue here, bool at_text_start) {
  clear();
  at_text_start_ = at_text_start;
  at_text_end_ = true;
  for (std::size_t thread = 0; thread < before.size() && !matched_; ++thread) {
    follow(before.instruction(thread), before.slots(thread), here);
  }
  at_text_start_ = false;
  at_text_end_ = false;
}

void ThreadList::follow(InstructionIndex first, const SlotValue* slots, SlotValue here) {
  if (slots != path_slots_.data()) std::copy_n(slots, program_->slots, path_slots_.begin());
  tasks_.push_back({first, 0, 0});
  while (!tasks_.empty()) {
    const Task task = tasks_.back();
    tasks_.pop_back();
    if (task.instruction == restore) {
      path_slots_[task.slot] = task.value;
      continue;
    }
    if (matched_ || seen_[task.instruction] == round_) continue;
    seen_[task.instruction] = round_;
    const Instruction& instruction = program_->instructions[task.instruction];
    switch (instruction.operation) {
      case Instruction::fork:
        tasks_.push_back({instruction.argument, 0, 0});
        tasks_.push_back({instruction.next, 0, 0});
        break;
      case Instruction::save:
        tasks_.push_back({restore, instruction.argument, path_slots_[instruction.argument]});
        path_slots_[instruction.argument] = here;
        tasks_.push_back({instruction.next, 0, 0});
        break;
      case Instruction::text_start:
        if (at_text_start_) tasks_.push_back({instruction.next, 0, 0});
        break;
      case Instruction::text_end:
        if (at_text_end_) {
          tasks_.push_back({instruction.next, 0, 0});
          break;
        }
        [[fallthrough]];
      case Instruction::bytes:
      case Instruction::match:
        append(task.instruction, path_slots_.data());
        break;
    }
  }
}

}  // namespace regex_detail
