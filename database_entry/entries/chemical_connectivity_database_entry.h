// A small entry that holds a chemical connectivity only.
//
//   ChemicalConnectivityDatabaseEntry entry;
//   entry.set_identifier(DatabaseEntryIdentifier("12.5 benzene.qdx"));
//   // entry.identifier is "12.5", entry.name is "benzene"
//
// It has no archive form.
#pragma once

#include <chemistry/connectivity.h>
#include <database_entry/export.h>
#include <utilities/database_entry_identifier.h>
#include <utilities/t_handle.h>

#include <string>

class DATABASE_ENTRY_EXPORT ChemicalConnectivityDatabaseEntry {
 public:
  DatabaseEntryIdentifier identifier;
  std::string name;
  THandle<Connectivity> connectivity;

  ChemicalConnectivityDatabaseEntry() = default;
  // Takes identifier and name as they are, without splitting; shares the connectivity.
  ChemicalConnectivityDatabaseEntry(const DatabaseEntryIdentifier& identifier, std::string name,
                                    THandle<Connectivity> connectivity);

  // Takes the file name of a connectivity query apart: "12.5 benzene.qdx" gives identifier and name,
  // "123abc.qdx" an identifier, and the name stays. Any other text is the identifier as a whole.
  // When it throws, nothing has changed.
  void set_identifier(const DatabaseEntryIdentifier& id);
};
