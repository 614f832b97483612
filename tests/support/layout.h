// The bytes of something archived, put together by hand, with the places of its counts, lengths and
// enumerations: those are the values that a damaged stream lies with.
//
//   Layout layout;
//   layout.count("synonyms", 2).text("synonym", "a").text("synonym", "b");
#pragma once

#include <string>
#include <vector>

#include "support/bytes.h"

// Where a field begins; `counted` ones begin with a count or a length.
struct Piece {
  std::size_t offset;
  bool counted;
};

struct Place {
  std::size_t offset;
  std::string name;
  std::int32_t value;
  bool is_size;  // a count or a length, not an enumeration
};

class Layout {
 public:
  Layout& count(const std::string& name, std::int32_t value) {
    return claim("count of " + name, value, true);
  }
  Layout& enumeration(const std::string& name, std::int32_t value) { return claim(name, value, false); }
  Layout& text(const std::string& name, const std::string& value) {
    claim("length of " + name, static_cast<std::int32_t>(value.size()), true);
    return append(value);
  }
  Layout& integer(std::int32_t value) { return raw(int32(value)); }
  Layout& real(double value) { return raw(float64(value)); }
  Layout& flag(bool value) { return raw(boolean(value)); }
  Layout& raw(const std::string& more) {
    pieces_.push_back({bytes_.size(), false});
    return append(more);
  }
  // Another layout, after this one.
  Layout& part(const Layout& other) {
    for (const Place& place : other.places_) {
      places_.push_back({bytes_.size() + place.offset, place.name, place.value, place.is_size});
    }
    for (const Piece& piece : other.pieces_) pieces_.push_back({bytes_.size() + piece.offset, piece.counted});
    return append(other.bytes_);
  }

  [[nodiscard]] const std::string& bytes() const { return bytes_; }
  [[nodiscard]] const std::vector<Place>& places() const { return places_; }
  [[nodiscard]] const std::vector<Piece>& pieces() const { return pieces_; }

 private:
  Layout& claim(const std::string& name, std::int32_t value, bool is_size) {
    places_.push_back({bytes_.size(), name, value, is_size});
    pieces_.push_back({bytes_.size(), is_size});
    return append(int32(value));
  }
  Layout& append(const std::string& more) {
    bytes_ += more;
    return *this;
  }

  std::string bytes_;
  std::vector<Place> places_;
  std::vector<Piece> pieces_;
};
