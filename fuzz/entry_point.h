// What every file of this folder defines: one run of one entry point over bytes that anyone may have written.
//
// A run that ends normally within a second is a good one, whatever the bytes were; everything else is a
// finding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

void take(const std::uint8_t* data, std::size_t size);

// What fuzzers call: takes the bytes, and measures how long that takes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Ends the process, which is how a fuzzer learns of a finding, unless `holds`.
inline void require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "finding: %s\n", what.c_str());
  std::abort();
}
