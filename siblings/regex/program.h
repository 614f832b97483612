// The program of an expression: what a thread of a search does, step by step.
// Internal: callers want regex/regex.h.
//
// Such machines are K. Thompson's (Regular expression search algorithm, Communications of the ACM 11, 1968);
// that they carry positions along is R. Pike's. docs/expressions.md shows one.
#pragma once

#include <regex/syntax_tree.h>
#include <regex/tag_plan.h>

#include <cstdint>
#include <vector>

namespace regex_detail {

using InstructionIndex = std::uint32_t;

struct Instruction {
  enum Operation : std::uint8_t {
    bytes,       // take a byte of the set `argument`, go on
    fork,        // prefer to go on; the second choice is `argument`
    tag,         // set the tag `argument` to the position, go on
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
  TagPlan plan;
  InstructionIndex start = 0;
};

// Throws RegexError where the pattern asks for too many instructions. Takes stack independent of the pattern.
Program compile(SyntaxTree tree);

}  // namespace regex_detail
