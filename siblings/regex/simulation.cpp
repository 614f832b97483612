#include <regex/simulation.h>
#include <regex/thread_list.h>

#include <utility>

namespace regex_detail {

bool simulate(const Program& program, std::string_view text, std::size_t from, unsigned int* slots) {
  ThreadList now(program);
  ThreadList next(program);
  bool found = false;
  const SlotPlan& plan = program.plan;
  const auto note_match = [&](const ThreadList& threads, std::size_t position) {
    if (!threads.matched()) return;
    found = true;
    const Position* notes = threads.notes(threads.size() - 1);
    for (std::size_t slot = 0; slot < plan.places.size(); ++slot) {
      const auto [note, distance] = plan.places[slot];
      const Position value = note == plan.match_end() ? static_cast<Position>(position) : notes[note];
      slots[slot] = value == unset ? unset : value + distance;
    }
  };

  now.start(static_cast<Position>(from), from == 0);
  note_match(now, from);
  for (std::size_t position = from; position < text.size() && !now.empty(); ++position) {
    const Position after = static_cast<Position>(position + 1);
    next.step(now, static_cast<unsigned char>(text[position]), after);
    // A later start is less preferred than every thread there is, and than a match that was found.
    if (!found) next.start(after, false);
    std::swap(now, next);
    note_match(now, after);
  }
  next.finish(now, static_cast<Position>(text.size()), text.empty());
  note_match(next, text.size());
  return found;
}

}  // namespace regex_detail
