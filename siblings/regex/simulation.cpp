#include <regex/simulation.h>
#include <regex/thread_list.h>

#include <utility>

namespace regex_detail {

bool simulate(const Program& program, std::string_view text, std::size_t from, unsigned int* slots) {
  ThreadList now(program);
  ThreadList next(program);
  bool found = false;
  const TagPlan& plan = program.plan;
  const auto record_match = [&](const ThreadList& threads, std::size_t position) {
    if (!threads.matched()) return;
    found = true;
    const Position* tags = threads.tags(threads.size() - 1);
    for (std::size_t slot = 0; slot < plan.places.size(); ++slot) {
      const auto [tag, distance] = plan.places[slot];
      const Position value = tag == plan.match_end() ? static_cast<Position>(position) : tags[tag];
      slots[slot] = value == unset ? unset : value + distance;
    }
  };

  now.start(static_cast<Position>(from), from == 0);
  record_match(now, from);
  for (std::size_t position = from; position < text.size() && !now.empty(); ++position) {
    const Position after = static_cast<Position>(position + 1);
    next.step(now, static_cast<unsigned char>(text[position]), after);
    // A later start is less preferred than every thread there is, and than a match that was found.
    if (!found) next.start(after, false);
    std::swap(now, next);
    record_match(now, after);
  }
  next.finish(now, static_cast<Position>(text.size()), text.empty());
  record_match(next, text.size());
  return found;
}

}  // namespace regex_detail
