// The whole library: entries, their records, references and checks.
//
//   CrystalStructureImmediateDatabaseEntry entry(DatabaseEntryIdentifier("ABCDEF01"), maker);
//   entry.print(std::cout);
//
// Each header can be included by itself as well. docs/architecture.md tells where to start reading.
#pragma once

#include <database_entry/checks/entry_checks.h>
#include <database_entry/entries/chemical_connectivity_database_entry.h>
#include <database_entry/entries/chemistry_components.h>
#include <database_entry/entries/components.h>
#include <database_entry/entries/crystal_structure_database_entry.h>
#include <database_entry/entries/crystal_structure_database_entry_data_source.h>
#include <database_entry/entries/crystal_structure_deferred_database_entry.h>
#include <database_entry/entries/crystal_structure_immediate_database_entry.h>
#include <database_entry/foundations/archive_encodings.h>
#include <database_entry/foundations/component_text.h>
#include <database_entry/foundations/enum_text_mapping.h>
#include <database_entry/foundations/sequence_text.h>
#include <database_entry/records/chemical_classification.h>
#include <database_entry/records/chemical_info.h>
#include <database_entry/records/crystal_info.h>
#include <database_entry/records/double_comparator.h>
#include <database_entry/records/editors_info.h>
#include <database_entry/records/experimental_info.h>
#include <database_entry/records/journal.h>
#include <database_entry/records/publication.h>
#include <database_entry/records/published_bond.h>
#include <database_entry/records/published_geometry.h>
#include <database_entry/records/range.h>
#include <database_entry/references/cross_reference_info.h>
#include <database_entry/references/database_cross_reference.h>
#include <database_entry/references/deposition_info.h>
#include <database_entry/references/regex_grep.h>
#include <utilities/test_suite.h>
#include <utilities/vorn_log.h>
