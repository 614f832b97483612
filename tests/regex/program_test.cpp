#include <gtest/gtest.h>
#include <regex/parser.h>
#include <regex/program.h>
#include <support/file_contents.h>

#include <sstream>
#include <string>

using regex_detail::ByteSet;
using regex_detail::Instruction;

namespace {

std::string shown(const ByteSet& set) {
  if (set == regex_detail::parse("\\d", false).sets[0]) return "a digit";
  if (set == regex_detail::parse("\\s", false).sets[0]) return "white space";
  for (std::size_t byte = 0; byte < set.size(); ++byte)
    if (set == ByteSet().set(byte)) return std::string("'") + static_cast<char>(byte) + "'";
  return "another set";
}

// One line an instruction, in the order in which they are written out: the last one first.
std::string shown(const regex_detail::Program& program) {
  std::ostringstream lines;
  for (std::size_t index = program.instructions.size(); index-- > 0;) {
    const Instruction& instruction = program.instructions[index];
    lines << index << (index == program.start ? " (start)  " : "          ");
    if (instruction.operation == Instruction::match) {
      lines << "match\n";
      continue;
    }
    if (instruction.operation == Instruction::bytes) {
      lines << "take " << shown(program.sets[instruction.argument]);
    } else if (instruction.operation == Instruction::tag) {
      lines << "set tag " << instruction.argument << " to the position";
    } else if (instruction.operation == Instruction::fork) {
      lines << "fork, second choice " << instruction.argument;
    }
    lines << ", go on with " << instruction.next << '\n';
  }
  return lines.str();
}

TEST(Program, IsTheOneThatThePageWalksThrough) {
  EXPECT_EQ(shown(regex_detail::compile(regex_detail::parse("VORN\\s(\\d+)", false))),
            contents_of_file(PROJECT_TREE "/tests/regex/vorn_program.txt"));
}

}  // namespace
