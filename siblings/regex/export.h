// What the shared library shows to the programs that link it; everything else stays hidden.
#pragma once

#define REGEX_EXPORT __attribute__((visibility("default")))
