// A deterministic automaton that keeps track of the capture groups: the fast way to search.
// Internal: callers want regex/regex.h.
//
// Its states are the thread lists of the simulation, worked out once for every kind of byte, while the
// expression is built. Where a slot of a thread holds a position, the state holds a name for it instead: the
// number of a register, or "here" for the position at which the state is entered. Naming registers in the
// order of their first mention makes lists that differ only in positions one state. So a byte costs one look
// into a table, and only where the positions move between registers, where a match has to be noted, or where
// nothing can follow, there is more to do.
//
// Nothing changes after building, and no byte is looked at twice: searches may run side by side and are
// linear.
#pragma once

#include <regex/program.h>
#include <regex/thread_list.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace regex_detail {

class TaggedAutomaton {
 public:
  // Nothing where the automaton would be too large; the simulation serves then.
  static std::optional<TaggedAutomaton> build(const Program& program);

  // As simulate().
  bool search(std::string_view text, std::size_t from, unsigned int* slots) const;

 private:
  friend class AutomatonBuilder;
  TaggedAutomaton() = default;

  // Slot values in states and recipes: registers from 0, and these names.
  static constexpr SlotValue here = unset - 1;
  // Only while a transition is worked out: where the state was entered that it leaves.
  static constexpr SlotValue before = unset - 2;
  static constexpr std::size_t most_registers = 32;

  using Row = std::uint32_t;     // where the transitions of a state start
  using Recipe = std::uint32_t;  // where the slots of a match start
  static constexpr std::uint32_t none = ~std::uint32_t{0};
  // Transitions from this value on are numbers of actions, below it they are rows.
  static constexpr std::uint32_t first_action = std::uint32_t{1} << 31;

  // A register gets the value of another one, or of the position before the byte.
  struct Move {
    std::uint32_t to;
    SlotValue from;
  };
  using Registers = std::array<unsigned int, most_registers>;

  // A transition with something to do, in this order.
  struct Action {
    Recipe match;  // the state that is left has matched and the next one has not: note the match
    Row next;      // none: nothing can follow
    std::uint32_t first_move;
    std::uint32_t moves;
  };

  void note_match(Recipe match, const Registers& registers, std::size_t position, unsigned int* slots) const;
  void move(const Action& action, Registers& registers, std::size_t position) const;
  std::size_t skip_to_start(std::string_view text, std::size_t position) const;

  std::array<std::uint8_t, 256> kind_of_byte_{};
  std::uint32_t end_of_text_ = 0;  // the column, after those of the kinds of bytes, with the final recipe
  std::vector<std::uint32_t> transitions_;  // row by row
  std::vector<Action> actions_;
  std::vector<Move> moves_;
  std::vector<SlotValue> recipes_;
  std::uint32_t slots_ = 0;
  Row first_row_ = none;  // for a search at the start of the text
  Row later_row_ = none;  // for a search that starts later; also the state in which nothing has begun yet
  // The bytes that lead out of the later row. When it is a single one, it is searched for on its own.
  std::array<bool, 256> starts_{};
  bool single_start_ = false;
  char single_start_byte_ = 0;
};

}  // namespace regex_detail
