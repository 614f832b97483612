// The program of an expression: what a thread of a search does, step by step.
// Internal: callers want regex/regex.h.
#pragma once

#include <regex/slot_plan.h>
#include <regex/syntax_tree.h>

#include <cstdint>
#include <vector>

namespace regex_detail {

using InstructionIndex = std::uint32_t;

struct Instruction {
  enum Operation : std::uint8_t {
    bytes,       // take a byte of the set `argument`, go on
    fork,        // prefer to go on; the second choice is `argument`
    save,        // note the position under the number `argument`, go on
    text_start,  // go on at the start of the text only
    text_end,    // go on at the end of the text only
    match        // done
  };

  Operation operation;
  InstructionIndex next = 0;
  std::uint32_t argument = 0;
};

// No instruction can be reached from itself without taking a byte.
struct Program {
  std::vector<Instruction> instructions;
  std::vector<ByteSet> sets;
  SlotPlan plan;
  InstructionIndex start = 0;
};

// Throws RegexError where the pattern asks for too many instructions. Takes stack independent of the pattern.
Program compile(SyntaxTree tree);

}  // namespace regex_detail
