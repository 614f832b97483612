// Marks what the utilities library offers to the programs that link it.
#pragma once

#define UTILITIES_EXPORT __attribute__((visibility("default")))
