// Importing the sample structures: a whole process, from its start to its end.
#pragma once

#include "report/suite.h"

// Measures `dbentry import` on a folder of CIF files, which leaves the stored entries in `archive`. Throws
// std::runtime_error when the program fails.
void add_import_case(Suite& suite, const std::string& dbentry, const std::string& cif_folder,
                     const std::string& archive);
