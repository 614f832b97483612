// Where debug lines go, and which of them are written.
//
//   VORNLog::level_ = 3;
//   if (VORNLog::active(3)) {
//     VORNLog::start_debug_line(3) << "released";
//     VORNLog::end_debug_line();
//   }
//
// A line of level L is meant to be written when level_ is at least L and minimum_level_ is at most L; whoever
// writes asks first. Usable at any time, before and after main too. Threads: one at a time.
#pragma once

#include <utilities/export.h>

#include <iosfwd>

class UTILITIES_EXPORT VORNLog {
 public:
  static int level_;
  static int minimum_level_;

  [[nodiscard]] static bool active(int level) { return level_ >= level && minimum_level_ <= level; }

  // The stream for the text of the line.
  static std::ostream& start_debug_line(int level);
  // Ends the line and flushes the stream.
  static void end_debug_line();

  // The stream must live as long as it may be written to. Standard error at start.
  static void set_stream(std::ostream& stream);
};
