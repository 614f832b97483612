// What every file of this folder defines: one run of one entry point over bytes that anyone may have written.
//
// A run that ends normally is a good one, whatever the bytes were; everything else is a finding.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

// Ends the process, which is how a fuzzer learns of a finding, unless `holds`.
inline void require(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "finding: %s\n", what.c_str());
  std::abort();
}
