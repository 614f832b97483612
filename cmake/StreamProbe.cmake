# Which ways into a C stream this machine's C library offers. Sets DATABASE_ENTRY_STREAM_DEFINITIONS.
include(CheckCXXSourceCompiles)
check_cxx_source_compiles("#include <cstdio>
int main() { char byte; return static_cast<int>(fread_unlocked(&byte, 1, 1, stdin) + fwrite_unlocked(&byte, 1, 1, stdout)); }"
  DATABASE_ENTRY_HAS_UNLOCKED_CALLS)
check_cxx_source_compiles("#include <cstdio>
#ifndef __GLIBC__
#error the fields of other C libraries may follow other rules
#endif
int main() { return stdin->_IO_read_ptr == stdin->_IO_read_end && stdout->_IO_write_ptr == stdout->_IO_write_end; }"
  DATABASE_ENTRY_HAS_STREAM_FIELDS)

set(DATABASE_ENTRY_STREAM_DEFINITIONS "")
if(DATABASE_ENTRY_HAS_UNLOCKED_CALLS)
  list(APPEND DATABASE_ENTRY_STREAM_DEFINITIONS DATABASE_ENTRY_UNLOCKED_CALLS)
endif()
if(DATABASE_ENTRY_HAS_STREAM_FIELDS AND NOT DATABASE_ENTRY_PORTABLE_STREAMS)
  list(APPEND DATABASE_ENTRY_STREAM_DEFINITIONS DATABASE_ENTRY_STREAM_FIELDS)
endif()
