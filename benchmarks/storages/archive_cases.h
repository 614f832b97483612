// Writing and reading entries beside the other libraries and the bare copies.
#pragma once

#include "report/suite.h"
#include "storages/storage.h"

// `kind` names the entries in the table; the goals are those for entries without atoms.
void add_archive_cases(Suite& suite, const std::string& kind, const StoredEntries& entries, bool with_goals);

// The same for entries that were made by setters and read into new ones, in files only.
void add_separate_entry_cases(Suite& suite, const StoredEntries& entries);
