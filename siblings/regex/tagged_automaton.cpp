#include <regex/tagged_automaton.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace regex_detail {

// Works out states and transitions, from the two start states on, until there are no new ones.
class AutomatonBuilder {
 public:
  explicit AutomatonBuilder(const Program& program)
      : program_(program), threads_(program), next_(program), end_matters_(has(Instruction::text_end)) {
    // Enough for an ordinary pattern, so that nothing grows step by step.
    const std::size_t likely_states = std::min(program_.instructions.size(), most_states);
    states_.reserve(likely_states);
    thread_instructions_.reserve(2 * likely_states);
    thread_tags_.reserve(2 * likely_states * program_.plan.tags);
    outcomes_.reserve(8);
    moves_.reserve(TaggedAutomaton::most_registers);
  }

  std::optional<TaggedAutomaton> build() {
    if (program_.instructions.size() > most_program_instructions) return std::nullopt;
    automaton_.slots_ = static_cast<std::uint32_t>(program_.plan.places.size());
    sort_bytes_into_classes();

    threads_.clear();
    threads_.start(here, false);
    later_state_ = enter(threads_, true, false);
    automaton_.later_row_ = row(later_state_);
    threads_.clear();
    threads_.start(here, true);
    automaton_.first_row_ = row(enter(threads_, true, has(Instruction::text_start)));

    for (std::uint32_t state = 0; state < states_.size() && !too_large_; ++state) work_out(state);
    if (too_large_) return std::nullopt;
    collect_runs();
    find_single_start();
    return std::move(automaton_);
  }

 private:
  using Move = TaggedAutomaton::Move;
  using Source = TaggedAutomaton::Source;
  using Row = TaggedAutomaton::Row;
  using Recipe = TaggedAutomaton::Recipe;
  static constexpr std::uint32_t none = TaggedAutomaton::none;
  static constexpr std::uint32_t dead = none;
  static constexpr Position here = TaggedAutomaton::here;
  // Only while a transition is worked out: where the state was entered that it leaves.
  static constexpr Position before = TaggedAutomaton::nowhere + 1;

  // These keep an automaton below 1 MB and its building below some milliseconds.
  static constexpr std::size_t most_program_instructions = 500;
  static constexpr std::size_t most_states = 250;
  static constexpr std::size_t most_tags = 20000;

  struct State {
    std::size_t first_thread;  // into thread_instructions_; their tags are in thread_tags_ alike
    std::size_t threads;
    std::uint64_t hash;
    bool may_start;      // no match has been found, so that later attempts matter
    bool at_text_start;  // only where that matters: the text may end here too, and ^ after $ still hold
    Recipe match;        // none where no thread has matched
  };

  // Bytes that the same threads of a state take lead to the same.
  using Takers = std::bitset<most_program_instructions>;
  struct Outcome {
    Takers takers;
    std::uint32_t transition;
  };

  bool has(Instruction::Operation operation) const {
    return std::any_of(program_.instructions.begin(), program_.instructions.end(),
                       [=](const Instruction& instruction) { return instruction.operation == operation; });
  }

  // Bytes that no set of the program tells apart are of one class. classes_ holds one byte of each. All bytes
  // are of one class at first, and each set splits the classes that it tells apart. From one border of a set
  // to the next bytes are alike.
  void sort_bytes_into_classes() {
    ByteSet borders;
    for (const ByteSet& set : program_.sets) borders |= set ^ (set << 1);
    borders.set(0);
    std::vector<std::size_t> stretches;
    for_each_byte(borders, [&](std::size_t byte) { stretches.push_back(byte); });

    std::vector<std::size_t> classes(stretches.size(), 0);
    std::size_t count = 1;
    std::vector<std::array<std::size_t, 2>> parts;
    for (const ByteSet& set : program_.sets) {
      parts.assign(count, {none, none});
      count = 0;
      for (std::size_t each = 0; each < stretches.size(); ++each) {
        std::size_t& part = parts[classes[each]][set[stretches[each]] ? 1 : 0];
        if (part == none) part = count++;
        classes[each] = part;
      }
    }

    classes_.resize(count);
    stretches.push_back(256);
    for (std::size_t each = 0; each < classes.size(); ++each) {
      classes_[classes[each]] = stretches[each];
      std::fill(automaton_.class_of_byte_.begin() + stretches[each],
                automaton_.class_of_byte_.begin() + stretches[each + 1],
                static_cast<std::uint8_t>(classes[each]));
    }
    automaton_.end_of_text_ = static_cast<std::uint32_t>(count);
    automaton_.transitions_.reserve(states_.capacity() * (automaton_.run() + 1));
  }

  Row row(std::uint32_t state) const { return state == dead ? none : state * (automaton_.run() + 1); }

  // The state that these threads are, after their registers have been renamed in the order of first mention;
  // moves_ says what goes into the new registers.
  std::uint32_t enter(ThreadList& threads, bool may_start, bool at_text_start) {
    rename_registers(threads);
    may_start = may_start && !threads.matched();
    if (threads.empty()) return dead;

    const std::uint64_t hash = hash_of(threads);
    for (std::uint32_t index = 0; index < states_.size(); ++index) {
      const State& state = states_[index];
      if (state.hash == hash && state.may_start == may_start && state.at_text_start == at_text_start &&
          has_threads(state, threads)) {  // uncovered: false only where two states share a hash
        return index;
      }
    }
    return add_state(threads, may_start, at_text_start, hash);
  }

  void rename_registers(ThreadList& threads) {
    moves_.clear();
    for (std::size_t thread = 0; thread < threads.size(); ++thread) {
      for (std::uint32_t tag = 0; tag < program_.plan.tags; ++tag) {
        Position& value = threads.tags(thread)[tag];
        if (value == unset || value == here) continue;
        const auto known =
            std::find_if(moves_.begin(), moves_.end(), [&](const Move& move) { return move.from == value; });
        const auto name = static_cast<std::uint32_t>(known - moves_.begin());
        if (known == moves_.end()) moves_.push_back({name, value});
        value = name;
      }
    }
    if (moves_.size() > TaggedAutomaton::most_registers) too_large_ = true;
  }

  std::uint64_t hash_of(const ThreadList& threads) const {
    std::uint64_t hash = 0;
    const auto add = [&hash](std::uint64_t value) { hash = (hash ^ value) * 0x9E3779B97F4A7C15U; };
    for (std::size_t thread = 0; thread < threads.size(); ++thread) {
      add(threads.instruction(thread));
      for (std::uint32_t tag = 0; tag < program_.plan.tags; ++tag) add(threads.tags(thread)[tag]);
    }
    return hash;
  }

  bool has_threads(const State& state, const ThreadList& threads) const {
    // uncovered: only where two states share a hash
    if (state.threads != threads.size()) return false;
    for (std::size_t thread = 0; thread < threads.size(); ++thread) {
      const Position* tags = thread_tags_.data() + (state.first_thread + thread) * program_.plan.tags;
      // uncovered: as above
      if (thread_instructions_[state.first_thread + thread] != threads.instruction(thread) ||
          !std::equal(tags, tags + program_.plan.tags, threads.tags(thread))) {
        return false;
      }
    }
    return true;
  }

  std::uint32_t add_state(const ThreadList& threads, bool may_start, bool at_text_start, std::uint64_t hash) {
    states_.push_back(
        {thread_instructions_.size(), threads.size(), hash, may_start, at_text_start, recipe(threads)});
    for (std::size_t thread = 0; thread < threads.size(); ++thread) {
      thread_instructions_.push_back(threads.instruction(thread));
      thread_tags_.insert(thread_tags_.end(), threads.tags(thread),
                          threads.tags(thread) + program_.plan.tags);
    }
    if (states_.size() > most_states || thread_tags_.size() > most_tags) too_large_ = true;
    return static_cast<std::uint32_t>(states_.size() - 1);
  }

  // How the slots of the matched thread come about when the search is where it has matched.
  Recipe recipe(const ThreadList& threads) {
    if (!threads.matched()) return none;
    const Position* tags = threads.tags(threads.size() - 1);
    const auto recipe = static_cast<Recipe>(automaton_.recipes_.size());
    for (const auto [tag, distance] : program_.plan.places) {
      const Position from = tag == program_.plan.match_end() ? here : tags[tag];
      automaton_.recipes_.push_back(from == unset ? Source{TaggedAutomaton::nowhere, 0}
                                                  : Source{from, distance});
    }
    return recipe;
  }

  // The threads of a state, with `name` for the position at which it is entered.
  void recall(const State& state, Position name) {
    threads_.clear();
    for (std::size_t thread = state.first_thread; thread < state.first_thread + state.threads; ++thread) {
      threads_.append(thread_instructions_[thread], thread_tags_.data() + thread * program_.plan.tags);
      for (std::uint32_t tag = 0; tag < program_.plan.tags; ++tag) {
        Position& value = threads_.tags(threads_.size() - 1)[tag];
        if (value == here) value = name;
      }
    }
  }

  void work_out(std::uint32_t index) {
    const State state = states_[index];
    recall(state, before);
    outcomes_.clear();
    for (const std::size_t byte : classes_) {
      const Takers takers = takers_of(byte);
      auto known = std::find_if(outcomes_.begin(), outcomes_.end(),
                                [&](const Outcome& outcome) { return outcome.takers == takers; });
      if (known == outcomes_.end()) {
        const std::uint32_t to = takers.none() ? give_up(state) : take(state, byte);
        known = outcomes_.insert(known, {takers, transition(index, to)});
      }
      automaton_.transitions_.push_back(known->transition);
    }
    automaton_.transitions_.push_back(at_end_of_text(state));
    automaton_.transitions_.push_back(0);
  }

  Takers takers_of(std::size_t byte) const {
    Takers takers;
    for (std::size_t thread = 0; thread < threads_.size(); ++thread) {
      const Instruction& instruction = program_.instructions[threads_.instruction(thread)];
      takers[thread] =
          instruction.operation == Instruction::bytes && program_.sets[instruction.argument][byte];
    }
    return takers;
  }

  std::uint32_t take(const State& state, std::size_t byte) {
    next_.step(threads_, byte, here);
    if (state.may_start) next_.start(here, false);
    return enter(next_, state.may_start, false);
  }

  // No thread goes on, but new ones may start.
  std::uint32_t give_up(const State& state) {
    moves_.clear();
    return state.may_start ? later_state_ : dead;
  }

  Recipe at_end_of_text(const State& state) {
    if (!end_matters_) return state.match;
    recall(state, here);
    next_.finish(threads_, here, state.at_text_start);
    return recipe(next_);
  }

  std::uint32_t transition(std::uint32_t from, std::uint32_t to) {
    std::erase_if(moves_, [](const Move& move) { return move.to == move.from; });
    // The match of a state that matches supersedes every earlier one, so it can wait until such states are
    // left.
    const bool to_match = to != dead && states_[to].match != none;
    const Recipe match = to_match ? none : states_[from].match;
    const bool to_search = row(to) == automaton_.later_row_ && from != to;
    if (to != dead && match == none && !to_search) {
      if (moves_.empty() && to == from) return TaggedAutomaton::stay;
      if (moves_.empty()) return to == from + 1 ? TaggedAutomaton::advance : row(to);
      // The first thread started first, so if that was at `before`, no other position is held, nor moved.
      const bool tags_start = moves_[0].to == 0 && moves_[0].from == before;
      if (to == from + 1 && tags_start) return TaggedAutomaton::begin;
    }

    const std::size_t first_move = automaton_.moves_.size();
    add_moves();
    automaton_.actions_.push_back({match, row(to), static_cast<std::uint32_t>(first_move),
                                   static_cast<std::uint32_t>(automaton_.moves_.size())});
    return static_cast<std::uint32_t>(TaggedAutomaton::first_action + automaton_.actions_.size() - 1);
  }

  // A transition moves all positions at once, a search one after the other. The registers that are written
  // are in ascending order. Where one is read after it has been written, all values take a detour.
  void add_moves() {
    std::vector<Move>& moves = automaton_.moves_;
    for (Move& move : moves_) {
      if (move.from == before) move.from = here;
    }
    const bool read_too_late =
        std::any_of(moves_.begin(), moves_.end(), [](const Move& move) { return move.from < move.to; });
    if (read_too_late) {
      for (Move& move : moves_) {
        const Position detour = move.to + TaggedAutomaton::most_registers;
        moves.push_back({detour, move.from});
        move.from = detour;
      }
    }
    moves.insert(moves.end(), moves_.begin(), moves_.end());
  }

  // A state that some bytes do not leave gets one of eight bits, and these bytes get it too: a search then
  // skips them by one look at each byte's bits. The first states have them, the later row before all others.
  void collect_runs() {
    std::vector<std::uint8_t> runs_of_class(classes_.size(), 0);
    std::uint8_t run = 1;
    for (std::uint32_t state = 0; state < states_.size() && run != 0; ++state) {
      std::uint32_t* transitions = automaton_.transitions_.data() + row(state);
      for (std::size_t each = 0; each < classes_.size(); ++each) {
        if (transitions[each] != TaggedAutomaton::stay) continue;
        runs_of_class[each] = static_cast<std::uint8_t>(runs_of_class[each] | run);
        transitions[automaton_.run()] = run;
      }
      if (transitions[automaton_.run()] == run) run = static_cast<std::uint8_t>(run << 1U);
    }
    for (std::size_t byte = 0; byte < 256; ++byte) {
      automaton_.runs_of_byte_[byte] = runs_of_class[automaton_.class_of_byte_[byte]];
    }
  }

  void find_single_start() {
    if (later_state_ == dead) return;
    const std::uint32_t run = automaton_.transitions_[automaton_.later_row_ + automaton_.run()];
    const auto starts = [run](std::uint8_t runs) { return (runs & run) == 0; };
    const auto& runs = automaton_.runs_of_byte_;
    automaton_.single_start_ = std::count_if(runs.begin(), runs.end(), starts) == 1;
    automaton_.single_start_byte_ =
        static_cast<char>(std::find_if(runs.begin(), runs.end(), starts) - runs.begin());
  }

  const Program& program_;
  TaggedAutomaton automaton_;
  std::vector<std::size_t> classes_;
  std::vector<State> states_;
  std::vector<InstructionIndex> thread_instructions_;
  std::vector<Position> thread_tags_;
  ThreadList threads_;
  ThreadList next_;
  std::vector<Move> moves_;
  std::vector<Outcome> outcomes_;
  const bool end_matters_;
  std::uint32_t later_state_ = dead;
  bool too_large_ = false;
};

std::optional<TaggedAutomaton> TaggedAutomaton::build(const Program& program) {
  return AutomatonBuilder(program).build();
}

bool TaggedAutomaton::search(std::string_view text, std::size_t from, unsigned int* slots) const {
  Registers registers;
  registers[nowhere] = unset;
  bool found = false;
  Row row = from == 0 ? first_row_ : later_row_;
  if (row == none) return false;
  const std::uint32_t* const transitions = transitions_.data();
  std::size_t position = row == later_row_ ? skip_to_start(text, from) : from;
  while (position < text.size()) {
    const std::uint32_t next = transitions[row + class_of_byte_[static_cast<unsigned char>(text[position])]];
    if (next == advance) {
      row += run() + 1;
    } else if (next == stay) {
      position = skip_run(transitions[row + run()], text, position + 1);
      continue;
    } else if (next == begin) {
      registers[0] = static_cast<Position>(position);
      row += run() + 1;
    } else if (next < first_action) {
      row = next;
    } else {
      const Action& action = actions_[next - first_action];
      registers[here] = static_cast<Position>(position);
      if (action.match != none) {
        record_match(action.match, registers, slots);
        found = true;
      }
      if (action.next == none) return found;
      for (std::uint32_t each = action.first_move; each < action.end_of_moves; ++each) {
        registers[moves_[each].to] = registers[moves_[each].from];
      }
      row = action.next;
      if (row == later_row_) {
        position = skip_to_start(text, position + 1);
        continue;
      }
    }
    ++position;
  }
  const Recipe match = transitions[row + end_of_text_];
  if (match == none) return found;
  registers[here] = static_cast<Position>(position);
  record_match(match, registers, slots);
  return true;
}

inline void TaggedAutomaton::record_match(Recipe match, const Registers& registers,
                                          unsigned int* slots) const {
  for (std::uint32_t slot = 0; slot < slots_; slot += 2) {
    const Source* source = recipes_.data() + match + slot;
    slots[slot] = registers[source[0].from] + source[0].distance;
    slots[slot + 1] = registers[source[1].from] + source[1].distance;
  }
}

// `run` is its bit.
inline std::size_t TaggedAutomaton::skip_run(std::uint32_t run, std::string_view text,
                                             std::size_t position) const {
  while (position < text.size() && (runs_of_byte_[static_cast<unsigned char>(text[position])] & run) != 0) {
    ++position;
  }
  return position;
}

inline std::size_t TaggedAutomaton::skip_to_start(std::string_view text, std::size_t position) const {
  if (!single_start_) return skip_run(transitions_[later_row_ + run()], text, position);
  const void* start = std::memchr(text.data() + position, single_start_byte_, text.size() - position);
  return start == nullptr ? text.size()
                          : static_cast<std::size_t>(static_cast<const char*>(start) - text.data());
}

}  // namespace regex_detail
