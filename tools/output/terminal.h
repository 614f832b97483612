// Where a command writes: results to `out`, messages to `messages`, and which of the two a person watches.
#pragma once

#include <iosfwd>

struct Terminal {
  std::ostream& out;
  std::ostream& messages;
  bool out_is_terminal = false;
  bool messages_are_terminal = false;
};
