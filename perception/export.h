// Marks what the perception library offers to the programs that link it.
#pragma once

#define PERCEPTION_EXPORT __attribute__((visibility("default")))
