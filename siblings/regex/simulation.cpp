#include <regex/simulation.h>
#include <regex/thread_list.h>

#include <algorithm>
#include <utility>

namespace regex_detail {

bool simulate(const Program& program, std::string_view text, std::size_t from, unsigned int* slots) {
  ThreadList now(program);
  ThreadList next(program);
  bool found = false;
  const auto note_match = [&](const ThreadList& threads) {
    if (!threads.matched()) return;
    found = true;
    std::copy_n(threads.slots(threads.size() - 1), program.slots, slots);
  };

  now.start(static_cast<SlotValue>(from), from == 0);
  note_match(now);
  for (std::size_t position = from; position < text.size() && !now.empty(); ++position) {
    const SlotValue after = static_cast<SlotValue>(position + 1);
    next.step(now, static_cast<unsigned char>(text[position]), after);
    // A later start is less preferred than every thread there is, and than a match that was found.
    if (!found) next.start(after, false);
    std::swap(now, next);
    note_match(now);
  }
  next.finish(now, static_cast<SlotValue>(text.size()), text.empty());
  note_match(next);
  return found;
}

}  // namespace regex_detail
