// Whether a million entries cost more per entry than a thousand.
#pragma once

#include "report/suite.h"
#include "storages/storage.h"

void add_scale_cases(Suite& suite, const StoredEntries& entries, std::size_t many);
