// Standard output that tells when it fails.
//
//   StandardOutput buffer(STDOUT_FILENO);
//   std::ostream out(&buffer);
//   out.exceptions(std::ios::badbit);
//
// A failed write throws out of the stream operation: ClosedPipe when the reader has gone, which is no fault
// of anybody's, ToolError (exit code 4) otherwise. Flush at the end: the destructor gives nothing away.
#pragma once

#include <exception>
#include <streambuf>
#include <vector>

class ClosedPipe : public std::exception {
 public:
  [[nodiscard]] const char* what() const noexcept override { return "the reader of the output has gone"; }
};

class StandardOutput : public std::streambuf {
 public:
  explicit StandardOutput(int descriptor);

 protected:
  int_type overflow(int_type byte) override;
  int sync() override;

 private:
  int descriptor_;
  std::vector<char> buffer_;
};
