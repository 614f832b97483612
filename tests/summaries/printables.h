// Everything of the library that prints itself, and the pieces that its text is made of.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

// std::endl: a line feed, and everything so far is flushed.
struct FlushedLineEnd {};

using Piece = std::variant<std::string, int, std::size_t, double, bool, FlushedLineEnd>;
using Pieces = std::vector<Piece>;

struct Printable {
  const char* name;
  std::function<void(std::ostream&)> print;
  Pieces pieces;
};

[[nodiscard]] const std::vector<Printable>& printables();

// Writes each piece with the stream's own operator.
void write_pieces(std::ostream& os, const Pieces& pieces);
