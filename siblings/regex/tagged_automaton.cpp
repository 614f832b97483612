#include <regex/tagged_automaton.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace regex_detail {

// Works out states and transitions, from the two start states on, until there are no new ones.
class AutomatonBuilder {
 public:
  explicit AutomatonBuilder(const Program& program) : program_(program), threads_(program), next_(program) {}

  std::optional<TaggedAutomaton> build() {
    if (program_.instructions.size() > most_program_instructions) return std::nullopt;
    automaton_.slots_ = program_.slots;
    sort_bytes_into_kinds();

    threads_.clear();
    threads_.start(TaggedAutomaton::here, false);
    automaton_.later_row_ = row(enter(threads_, true, false));
    threads_.clear();
    threads_.start(TaggedAutomaton::here, true);
    const bool start_matters = std::any_of(
        program_.instructions.begin(), program_.instructions.end(),
        [](const Instruction& instruction) { return instruction.operation == Instruction::text_start; });
    automaton_.first_row_ = row(enter(threads_, true, start_matters));

    for (std::uint32_t state = 0; state < states_.size() && !too_large_; ++state) work_out(state);
    if (too_large_) return std::nullopt;
    find_starts();
    return std::move(automaton_);
  }

 private:
  using Move = TaggedAutomaton::Move;
  using Row = TaggedAutomaton::Row;
  using Recipe = TaggedAutomaton::Recipe;
  static constexpr std::uint32_t none = TaggedAutomaton::none;
  static constexpr std::uint32_t dead = none;

  // These keep an automaton below 1 MB and its building below some milliseconds.
  static constexpr std::size_t most_program_instructions = 500;
  static constexpr std::size_t most_states = 250;
  static constexpr std::size_t most_slot_values = 20000;

  struct State {
    std::size_t first_thread;  // into thread_instructions_; the slots lie in thread_slots_ alike
    std::size_t threads;
    std::size_t hash;
    bool may_start;      // no match has been found, so that later attempts matter
    bool at_text_start;  // only where that matters: the text may end here too, and ^ after $ still hold
    Recipe match;        // none where no thread has matched
  };

  // Bytes that no set of the program tells apart are of one kind. kinds_ holds one byte of each.
  void sort_bytes_into_kinds() {
    ByteSet borders;
    for (const ByteSet& set : program_.sets) borders |= set ^ (set << 1);
    borders.set(0);
    std::vector<std::vector<bool>> memberships;
    std::size_t kind = 0;
    for (std::size_t byte = 0; byte < 256; ++byte) {
      if (borders[byte]) {
        std::vector<bool> membership;
        for (const ByteSet& set : program_.sets) membership.push_back(set[byte]);
        kind = static_cast<std::size_t>(std::find(memberships.begin(), memberships.end(), membership) -
                                        memberships.begin());
        if (kind == memberships.size()) {
          memberships.push_back(std::move(membership));
          kinds_.push_back(byte);
        }
      }
      automaton_.kind_of_byte_[byte] = static_cast<std::uint8_t>(kind);
    }
    automaton_.end_of_text_ = static_cast<std::uint32_t>(kinds_.size());
  }

  Row row(std::uint32_t state) const { return state == dead ? none : state * (automaton_.end_of_text_ + 1); }

  // The state that these threads are, after their registers have been renamed in the order of first mention;
  // moves_ says what goes into the new registers.
  std::uint32_t enter(ThreadList& threads, bool may_start, bool at_text_start) {
    rename_registers(threads);
    may_start = may_start && !threads.matched();
    if (threads.empty()) return dead;

    const std::size_t hash = hash_of(threads);
    for (std::uint32_t index = 0; index < states_.size(); ++index) {
      const State& state = states_[index];
      if (state.hash == hash && state.may_start == may_start && state.at_text_start == at_text_start &&
          has_threads(state, threads)) {
        return index;
      }
    }
    return add_state(threads, may_start, at_text_start, hash);
  }

  void rename_registers(ThreadList& threads) {
    moves_.clear();
    for (std::size_t thread = 0; thread < threads.size(); ++thread) {
      for (std::uint32_t slot = 0; slot < program_.slots; ++slot) {
        SlotValue& value = threads.slots(thread)[slot];
        if (value == unset || value == TaggedAutomaton::here) continue;
        const auto known =
            std::find_if(moves_.begin(), moves_.end(), [&](const Move& move) { return move.from == value; });
        const auto name = static_cast<std::uint32_t>(known - moves_.begin());
        if (known == moves_.end()) moves_.push_back({name, value});
        value = name;
      }
    }
    if (moves_.size() > TaggedAutomaton::most_registers) too_large_ = true;
  }

  std::size_t hash_of(const ThreadList& threads) const {
    std::size_t hash = 0;
    const auto add = [&hash](std::size_t value) { hash = (hash ^ value) * 0x9E3779B97F4A7C15U; };
    for (std::size_t thread = 0; thread < threads.size(); ++thread) {
      add(threads.instruction(thread));
      for (std::uint32_t slot = 0; slot < program_.slots; ++slot) add(threads.slots(thread)[slot]);
    }
    return hash;
  }

  bool has_threads(const State& state, const ThreadList& threads) const {
    if (state.threads != threads.size()) return false;
    for (std::size_t thread = 0; thread < threads.size(); ++thread) {
      const SlotValue* slots = thread_slots_.data() + (state.first_thread + thread) * program_.slots;
      if (thread_instructions_[state.first_thread + thread] != threads.instruction(thread) ||
          !std::equal(slots, slots + program_.slots, threads.slots(thread))) {
        return false;
      }
    }
    return true;
  }

  std::uint32_t add_state(const ThreadList& threads, bool may_start, bool at_text_start, std::size_t hash) {
    states_.push_back(
        {thread_instructions_.size(), threads.size(), hash, may_start, at_text_start, recipe(threads)});
    for (std::size_t thread = 0; thread < threads.size(); ++thread) {
      thread_instructions_.push_back(threads.instruction(thread));
      thread_slots_.insert(thread_slots_.end(), threads.slots(thread),
                           threads.slots(thread) + program_.slots);
    }
    if (states_.size() > most_states || thread_slots_.size() > most_slot_values) too_large_ = true;
    return static_cast<std::uint32_t>(states_.size() - 1);
  }

  // Where the slots of the matched thread are kept for note_match().
  Recipe recipe(const ThreadList& threads) {
    if (!threads.matched()) return none;
    std::vector<SlotValue>& recipes = automaton_.recipes_;
    const SlotValue* slots = threads.slots(threads.size() - 1);
    recipes.insert(recipes.end(), slots, slots + program_.slots);
    return static_cast<Recipe>(recipes.size() - program_.slots);
  }

  // The threads of a state, with `name` for the position at which it is entered.
  void recall(const State& state, SlotValue name) {
    threads_.clear();
    for (std::size_t thread = state.first_thread; thread < state.first_thread + state.threads; ++thread) {
      threads_.append(thread_instructions_[thread], thread_slots_.data() + thread * program_.slots);
      for (std::uint32_t slot = 0; slot < program_.slots; ++slot) {
        SlotValue& value = threads_.slots(threads_.size() - 1)[slot];
        if (value == TaggedAutomaton::here) value = name;
      }
    }
  }

  void work_out(std::uint32_t index) {
    const State state = states_[index];
    recall(state, TaggedAutomaton::before);
    for (const std::size_t byte : kinds_) {
      next_.step(threads_, byte, TaggedAutomaton::here);
      if (state.may_start) next_.start(TaggedAutomaton::here, false);
      automaton_.transitions_.push_back(transition(index, enter(next_, state.may_start, false)));
    }
    recall(state, TaggedAutomaton::here);
    next_.finish(threads_, TaggedAutomaton::here, state.at_text_start);
    automaton_.transitions_.push_back(recipe(next_));
  }

  std::uint32_t transition(std::uint32_t from, std::uint32_t to) {
    std::erase_if(moves_, [](const Move& move) { return move.to == move.from; });
    // The match of a state that matches supersedes every earlier one, so it can wait until such states are
    // left.
    const bool to_match = to != dead && states_[to].match != none;
    const Recipe match = to_match ? none : states_[from].match;
    const bool to_search = row(to) == automaton_.later_row_ && from != to;
    if (to != dead && match == none && moves_.empty() && !to_search) return row(to);

    automaton_.actions_.push_back({match, row(to), static_cast<std::uint32_t>(automaton_.moves_.size()),
                                   static_cast<std::uint32_t>(moves_.size())});
    automaton_.moves_.insert(automaton_.moves_.end(), moves_.begin(), moves_.end());
    return static_cast<std::uint32_t>(TaggedAutomaton::first_action + automaton_.actions_.size() - 1);
  }

  void find_starts() {
    const Row later = automaton_.later_row_;
    if (later == none) return;
    std::size_t count = 0;
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const bool starts = automaton_.transitions_[later + automaton_.kind_of_byte_[byte]] != later;
      automaton_.starts_[byte] = starts;
      if (!starts) continue;
      ++count;
      automaton_.single_start_byte_ = static_cast<char>(byte);
    }
    automaton_.single_start_ = count == 1;
  }

  const Program& program_;
  TaggedAutomaton automaton_;
  std::vector<std::size_t> kinds_;
  std::vector<State> states_;
  std::vector<InstructionIndex> thread_instructions_;
  std::vector<SlotValue> thread_slots_;
  ThreadList threads_;
  ThreadList next_;
  std::vector<Move> moves_;
  bool too_large_ = false;
};

std::optional<TaggedAutomaton> TaggedAutomaton::build(const Program& program) {
  return AutomatonBuilder(program).build();
}

bool TaggedAutomaton::search(std::string_view text, std::size_t from, unsigned int* slots) const {
  const auto transition = [&](Row row, std::size_t position) {
    return transitions_[row + kind_of_byte_[static_cast<unsigned char>(text[position])]];
  };
  Registers registers;
  bool found = false;
  Row row = from == 0 ? first_row_ : later_row_;
  if (row == none) return false;
  std::size_t position = row == later_row_ ? skip_to_start(text, from) : from;
  while (position < text.size()) {
    const std::uint32_t next = transition(row, position);
    if (next == row) {
      // A run of bytes that a state takes without leaving it: no look into the table waits for the one
      // before.
      do {
        ++position;
      } while (position < text.size() && transition(row, position) == row);
      continue;
    }
    if (next < first_action) {
      row = next;
      ++position;
      continue;
    }
    const Action& action = actions_[next - first_action];
    if (action.match != none) {
      note_match(action.match, registers, position, slots);
      found = true;
    }
    if (action.next == none) return found;
    move(action, registers, position);
    row = action.next;
    ++position;
    if (row == later_row_) position = skip_to_start(text, position);
  }
  const Recipe match = transitions_[row + end_of_text_];
  if (match == none) return found;
  note_match(match, registers, position, slots);
  return true;
}

void TaggedAutomaton::note_match(Recipe match, const Registers& registers, std::size_t position,
                                 unsigned int* slots) const {
  for (std::uint32_t slot = 0; slot < slots_; ++slot) {
    const SlotValue value = recipes_[match + slot];
    slots[slot] = value == unset  ? unset
                  : value == here ? static_cast<unsigned int>(position)
                                  : registers[value];
  }
}

// The moves of an action happen at once, so all values are taken before any is stored.
void TaggedAutomaton::move(const Action& action, Registers& registers, std::size_t position) const {
  Registers values;
  const Move* moves = moves_.data() + action.first_move;
  for (std::uint32_t each = 0; each < action.moves; ++each) {
    values[each] =
        moves[each].from == before ? static_cast<unsigned int>(position) : registers[moves[each].from];
  }
  for (std::uint32_t each = 0; each < action.moves; ++each) registers[moves[each].to] = values[each];
}

std::size_t TaggedAutomaton::skip_to_start(std::string_view text, std::size_t position) const {
  if (single_start_) return std::min(text.find(single_start_byte_, position), text.size());
  while (position < text.size() && !starts_[static_cast<unsigned char>(text[position])]) ++position;
  return position;
}

}  // namespace regex_detail
