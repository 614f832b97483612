// Marks what the mathematics library offers to the programs that link it.
#pragma once

#define MATHEMATICS_EXPORT __attribute__((visibility("default")))
