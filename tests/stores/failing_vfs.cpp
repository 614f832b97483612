#include "stores/failing_vfs.h"

#include <cstddef>
#include <cstring>
#include <new>

namespace {

struct Plan {
  int calls = 0;
  int fails_at = 0;  // 0: never
  bool goes_on = false;

  bool fails() {
    ++calls;
    return fails_at != 0 && (goes_on ? calls >= fails_at : calls == fails_at);
  }
};
Plan plan;
sqlite3_vfs* real_vfs = nullptr;

// The real file lies after ours.
struct File {
  sqlite3_file base;
  sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
  static File* of(sqlite3_file* file) { return reinterpret_cast<File*>(file); }
};

sqlite3_file* real(sqlite3_file* file) {
  return File::of(file)->real();
}

const sqlite3_io_methods methods = {
    .iVersion = 2,
    .xClose = [](sqlite3_file* f) { return real(f)->pMethods->xClose(real(f)); },
    .xRead =
        [](sqlite3_file* f, void* into, int size, sqlite3_int64 at) {
          return plan.fails() ? SQLITE_IOERR_READ : real(f)->pMethods->xRead(real(f), into, size, at);
        },
    .xWrite =
        [](sqlite3_file* f, const void* from, int size, sqlite3_int64 at) {
          return plan.fails() ? SQLITE_FULL : real(f)->pMethods->xWrite(real(f), from, size, at);
        },
    .xTruncate =
        [](sqlite3_file* f, sqlite3_int64 size) {
          return plan.fails() ? SQLITE_IOERR_TRUNCATE : real(f)->pMethods->xTruncate(real(f), size);
        },
    .xSync =
        [](sqlite3_file* f, int flags) {
          return plan.fails() ? SQLITE_IOERR_FSYNC : real(f)->pMethods->xSync(real(f), flags);
        },
    .xFileSize =
        [](sqlite3_file* f, sqlite3_int64* size) {
          return plan.fails() ? SQLITE_IOERR_FSTAT : real(f)->pMethods->xFileSize(real(f), size);
        },
    .xLock =
        [](sqlite3_file* f, int kind) {
          return plan.fails() ? SQLITE_IOERR_LOCK : real(f)->pMethods->xLock(real(f), kind);
        },
    .xUnlock = [](sqlite3_file* f, int kind) { return real(f)->pMethods->xUnlock(real(f), kind); },
    .xCheckReservedLock = [](sqlite3_file* f,
                             int* result) { return real(f)->pMethods->xCheckReservedLock(real(f), result); },
    .xFileControl =
        [](sqlite3_file* f, int operation, void* argument) {
          return real(f)->pMethods->xFileControl(real(f), operation, argument);
        },
    .xSectorSize = [](sqlite3_file* f) { return real(f)->pMethods->xSectorSize(real(f)); },
    .xDeviceCharacteristics =
        [](sqlite3_file* f) { return real(f)->pMethods->xDeviceCharacteristics(real(f)); },
    .xShmMap =
        [](sqlite3_file* f, int page, int size, int extend, void volatile** where) {
          return plan.fails() ? SQLITE_IOERR_SHMMAP
                              : real(f)->pMethods->xShmMap(real(f), page, size, extend, where);
        },
    .xShmLock =
        [](sqlite3_file* f, int first, int count, int flags) {
          const bool is_lock = (flags & SQLITE_SHM_LOCK) != 0;
          return is_lock && plan.fails() ? SQLITE_IOERR_SHMLOCK
                                         : real(f)->pMethods->xShmLock(real(f), first, count, flags);
        },
    .xShmBarrier = [](sqlite3_file* f) { real(f)->pMethods->xShmBarrier(real(f)); },
    .xShmUnmap = [](sqlite3_file* f, int remove) { return real(f)->pMethods->xShmUnmap(real(f), remove); },
    .xFetch = nullptr,
    .xUnfetch = nullptr,
};

int open(sqlite3_vfs*, const char* name, sqlite3_file* f, int flags, int* out_flags) {
  f->pMethods = nullptr;
  if (plan.fails()) return SQLITE_CANTOPEN;
  const int code = real_vfs->xOpen(real_vfs, name, real(f), flags, out_flags);
  if (code == SQLITE_OK) f->pMethods = &methods;
  return code;
}

int remove(sqlite3_vfs*, const char* name, int sync_folder) {
  return plan.fails() ? SQLITE_IOERR_DELETE : real_vfs->xDelete(real_vfs, name, sync_folder);
}

}  // namespace

FailingVfs::FailingVfs() : vfs_() {
  real_vfs = sqlite3_vfs_find(nullptr);
  vfs_ = *real_vfs;
  vfs_.zName = "failing";
  vfs_.szOsFile = static_cast<int>(sizeof(File)) + real_vfs->szOsFile;
  vfs_.xOpen = open;
  vfs_.xDelete = remove;
  plan = {};
  sqlite3_vfs_register(&vfs_, 1);
}

FailingVfs::~FailingVfs() {
  plan = {};
  sqlite3_vfs_unregister(&vfs_);
  sqlite3_vfs_register(real_vfs, 1);
}

void FailingVfs::fail_at(int call, Kind kind) {
  plan = {.calls = 0, .fails_at = call, .goes_on = kind == always};
}
void FailingVfs::never_fail() {
  plan = {};
}
int FailingVfs::calls() const {
  return plan.calls;
}
