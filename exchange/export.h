// Marks what the exchange library offers to the programs that link it.
#pragma once

#define EXCHANGE_EXPORT __attribute__((visibility("default")))
