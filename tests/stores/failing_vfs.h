// Files for SQLite that fail at a chosen call, once or from then on.
//
//   FailingVfs files;                      // all connections opened from now on use it
//   files.fail_at(17, FailingVfs::always);
//   ... work ...
//   files.never_fail();
//
// Every call of SQLite that may fail is counted: reading, writing, truncating, syncing, sizes, locks, shared
// memory, opening, removing. Reading through a memory map is turned off, so that no read escapes the count.
#pragma once

#include <sqlite3.h>

class FailingVfs {
 public:
  enum Kind { once, always };

  FailingVfs();
  FailingVfs(const FailingVfs&) = delete;
  FailingVfs& operator=(const FailingVfs&) = delete;
  ~FailingVfs();

  void fail_at(int call, Kind kind);
  void never_fail();
  // Since fail_at() or never_fail().
  [[nodiscard]] int calls() const;

 private:
  sqlite3_vfs vfs_;
};
