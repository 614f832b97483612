// Checks an entry against what is expected of it, without stopping at the first difference.
//
//   test_database_entry_summary("run1", entry, "ABCDEF", 10.0, 4);
//   test_database_entry_handles("run1", entry);
//   for (const std::string& message : TestSuite::failures()) std::cerr << message;
//
// A difference is recorded with the TestSuite, never thrown. What an accessor of the entry throws passes
// through and ends the routine.
#pragma once

#include <database_entry/entries/crystal_structure_database_entry.h>
#include <database_entry/export.h>
#include <utilities/test_suite.h>

#include <string>

// Compares the identifier, the length a of the cell in ångström (within 1e-7; NaN passes) and the number of
// symmetry operators, and records failures only. Throws NullHandleError when there is no cell or no list of
// operators; the checks after that are not made. Writes a debug line of level 1 when that level is logged.
DATABASE_ENTRY_EXPORT void test_database_entry_summary(std::string test_name,
                                                       const CrystalStructureDatabaseEntry& entry,
                                                       std::string identifier, double a,
                                                       int number_of_symmetry_operators);

// Checks that crystal_maker(), experimental_info(), editors_info() and crystal_diagram_match() each give the
// same object at two successive calls. Records four executions, named "<test_name>::crystal_maker()" and so
// on.
DATABASE_ENTRY_EXPORT void test_database_entry_handles(const std::string& test_name,
                                                       const CrystalStructureDatabaseEntry& entry);
