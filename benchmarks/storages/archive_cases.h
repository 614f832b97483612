// Writing and reading entries beside the other libraries and the bare copies.
#pragma once

#include "report/suite.h"
#include "storages/storage.h"

// `kind` names the entries in the table; the goals are those for entries without atoms.
void add_archive_cases(Suite& suite, const std::string& kind, const StoredEntries& entries, bool with_goals);

// A file that lives in memory, with the buffer that every new stream has. It is closed with the program.
FILE* file_in_memory();
