// Where a command writes: results to `out`, messages to `messages`, and which of the two a person watches.
#pragma once

#include <cstddef>
#include <iosfwd>

struct Terminal {
  std::ostream& out;
  std::ostream& messages;
  bool out_is_terminal = false;
  bool messages_are_terminal = false;
  std::size_t columns = 0;  // of the terminal that shows `out`; 0: not known, lines are as long as they are
};
