// What an Archive throws when its stream cannot give or take what was asked for.
//
// The text says what was wanted, at which offset of the stream when the stream has one, and in which
// component of an entry when that is known:
//   "Archive: end of the stream while reading an int at offset 1236 (publication)"
#pragma once

#include <utilities/export.h>

#include <stdexcept>

class UTILITIES_EXPORT ArchiveError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};
