// A deterministic automaton that keeps track of the capture groups: the fast way to search.
// Internal: callers want regex/regex.h.
//
// Its states are the thread lists of the simulation, worked out once for every class of bytes, while the
// expression is built. Where a thread has set a tag, the state holds a name for the position instead: the
// number of a register, or "here" for the position at which the state is entered. Naming registers in the
// order of their first mention makes lists that differ only in positions one state. So a byte costs one look
// into a table, and only where the positions move between registers, where a match has to be recorded, or
// where nothing can follow, there is more to do. Runs of bytes that a state takes without leaving it cost
// less: they are skipped without the table.
//
// Nothing changes after building, and no byte is looked at twice: searches may run side by side and are
// linear.
//
// V. Laurikari, NFAs with tagged transitions, their conversion to deterministic automata and application to
// regular expressions, SPIRE 2000. U. Trofimovich, Tagged deterministic finite automata with lookahead, 2017.
// docs/expressions.md walks through one.
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

  // Registers from 0 hold positions while a search runs. States may name the first of them. The next are as
  // many: where two positions change places, both are put there first. The last two hold where the search is
  // and "no position".
  static constexpr Position most_registers = 32;
  static constexpr Position here = 2 * most_registers;
  static constexpr Position nowhere = here + 1;
  using Registers = std::array<Position, 2 * most_registers + 2>;

  using Row = std::uint32_t;     // where the transitions of a state start
  using Recipe = std::uint32_t;  // where the slots of a match start
  static constexpr std::uint32_t none = ~std::uint32_t{0};

  // A transition is a row, or from first_action on the number of an action. The commonest do not name the
  // row: a processor that foresees them need not wait for one look into the table before the next.
  static constexpr std::uint32_t first_action = std::uint32_t{1} << 31;
  static constexpr std::uint32_t stay = none;
  static constexpr std::uint32_t advance = none - 1;  // to the row after this one
  static constexpr std::uint32_t begin = none - 2;    // the same, and register 0 gets the position

  // How a slot of a match comes about: a register plus a distance.
  struct Source {
    Position from;
    std::uint32_t distance;
  };

  // A register gets the value of another one.
  struct Move {
    Position to;
    Position from;
  };

  // A transition with something to do, in this order. The moves are the register operations of the
  // literature, the recipe is its final ones.
  struct Action {
    Recipe match;  // the state that is left has matched and the next one has not: record the match
    Row next;      // none: nothing can follow
    std::uint32_t first_move;
    std::uint32_t end_of_moves;
  };

  void record_match(Recipe match, const Registers& registers, unsigned int* slots) const;
  std::size_t skip_run(std::uint32_t run, std::string_view text, std::size_t position) const;
  std::size_t skip_to_start(std::string_view text, std::size_t position) const;

  std::array<std::uint8_t, 256> class_of_byte_{};
  std::array<std::uint8_t, 256> runs_of_byte_{};  // a bit for each run
  // The columns of a row, after those of the byte classes: the recipe where the text ends, and the bit of
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
