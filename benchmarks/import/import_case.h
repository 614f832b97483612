// Importing the sample structures.
#pragma once

#include "report/suite.h"

// Measures `dbentry import` on a folder of CIF files, a whole process, which leaves the stored entries in
// `archive` and has them handed to the disk; and, in this process, files that become the bytes of entries
// beside files that are only parsed. Throws std::runtime_error when the program fails.
void add_import_cases(Suite& suite, const std::string& dbentry, const std::string& cif_folder,
                      const std::string& archive);
