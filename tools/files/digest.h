// SHA-256 (FIPS 180-4), by OpenSSL's libcrypto.
//
//   Digest digest;
//   digest.add(bytes);
//   digest.text();          // "e3b0c442..." : 64 hexadecimal digits
#pragma once

#include <memory>
#include <string>
#include <string_view>

class Digest {
 public:
  Digest();
  ~Digest();
  Digest(const Digest&) = delete;
  Digest& operator=(const Digest&) = delete;

  void add(std::string_view bytes);
  // Once, after the last byte.
  [[nodiscard]] std::string text();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// A digest that was kept in a file, in the form of sha256sum: digits, two blanks, a name. Throws ToolError
// (cannot_open) for a file that holds no digest.
[[nodiscard]] std::string kept_digest(const std::string& path);
