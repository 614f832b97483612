// A deterministic automaton that keeps track of the capture groups: the fast way to search.
// Internal: callers want regex/regex.h.
//
// Its states are the thread lists of the simulation, worked out once for every kind of byte, while the
// expression is built. Where a thread has noted a position, the state holds a name for it instead: the number
// of a register, or "here" for the position at which the state is entered. Naming registers in the order of
// their first mention makes lists that differ only in positions one state. So a byte costs one look into a
// table, and only where the positions move between registers, where a match has to be noted, or where nothing
// can follow, there is more to do. Runs of bytes that a state takes without leaving it cost less: they are
// skipped without the table.
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

  // Registers from 0 hold positions while a search runs. Behind those that states may name there are as many
  // for moves that must not get into each other's way, and one each for where the search stands and for no
  // position.
  static constexpr Position most_registers = 32;
  static constexpr Position here = 2 * most_registers;
  static constexpr Position nowhere = here + 1;
  using Registers = std::array<Position, 2 * most_registers + 2>;

  using Row = std::uint32_t;     // where the transitions of a state start
  using Recipe = std::uint32_t;  // where the slots of a match start
  static constexpr std::uint32_t none = ~std::uint32_t{0};

  // Transitions are rows, or from first_action on numbers of actions, but for the commonest. Those do not
  // name the row, so that a processor that foresees them need not wait for one look into the table before the
  // next.
  static constexpr std::uint32_t first_action = std::uint32_t{1} << 31;
  static constexpr std::uint32_t stay = none;
  static constexpr std::uint32_t advance = none - 1;  // to the row behind this one
  static constexpr std::uint32_t begin = none - 2;    // the same, and note the position in register 0

  // How a slot of a match comes about.
  struct Source {
    Position from;
    std::uint32_t distance;  // is added
  };

  // A register gets the value of another one.
  struct Move {
    Position to;
    Position from;
  };

  // A transition with something to do, in this order.
  struct Action {
    Recipe match;  // the state that is left has matched and the next one has not: note the match
    Row next;      // none: nothing can follow
    std::uint32_t first_move;
    std::uint32_t end_of_moves;
  };

  void note_match(Recipe match, const Registers& registers, unsigned int* slots) const;
  std::size_t skip_run(std::uint32_t run, std::string_view text, std::size_t position) const;
  std::size_t skip_to_start(std::string_view text, std::size_t position) const;

  std::array<std::uint8_t, 256> kind_of_byte_{};
  std::array<std::uint8_t, 256> runs_of_byte_{};  // a bit for each run
  // The columns of a row, after those of the kinds of bytes: the recipe where the text ends, and the bit of
  // the run of bytes after which the state is still the same, 0 where there was no bit left for it.
  std::uint32_t end_of_text_ = 0;
  std::uint32_t run() const { return end_of_text_ + 1; }
  std::vector<std::uint32_t> transitions_;  // row by row
  std::vector<Action> actions_;
  std::vector<Move> moves_;
  std::vector<Source> recipes_;
  std::uint32_t slots_ = 0;
  Row first_row_ = none;  // for a search at the start of the text
  Row later_row_ = none;  // for a search that starts later; also the state in which nothing has begun yet
  // The byte that every match starts with, where there is a single one.
  bool single_start_ = false;
  char single_start_byte_ = 0;
};

}  // namespace regex_detail
