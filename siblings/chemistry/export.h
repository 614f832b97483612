// Marks what the chemistry library offers to the programs that link it.
#pragma once

#define CHEMISTRY_EXPORT __attribute__((visibility("default")))
