// Marks what the regex library offers to the programs that link it.
#pragma once

#define REGEX_EXPORT __attribute__((visibility("default")))
