# What this machine's libraries show of their streams and strings, and what its processor offers.
# Sets DATABASE_ENTRY_ARCHIVING_DEFINITIONS. Whatever is not there has another way, which DATABASE_ENTRY_PORTABLE_STREAMS takes everywhere.
include(CheckCXXSourceCompiles)
check_cxx_source_compiles("#include <cstdio>
int main() { char byte; return static_cast<int>(fread_unlocked(&byte, 1, 1, stdin) + fwrite_unlocked(&byte, 1, 1, stdout)); }"
  DATABASE_ENTRY_HAS_UNLOCKED_CALLS)
check_cxx_source_compiles("#include <cstdio>
int main() { return static_cast<int>(ftello(stdin)); }"
  DATABASE_ENTRY_HAS_LONG_OFFSETS)
check_cxx_source_compiles("#include <cstdio>
#ifndef __GLIBC__
#error the fields of other C libraries may follow other rules
#endif
int main() { return stdin->_IO_read_ptr == stdin->_IO_read_end && stdout->_IO_write_ptr == stdout->_IO_write_end; }"
  DATABASE_ENTRY_HAS_STREAM_FIELDS)
# Other libraries may have as much space in a string, and yet forbid a look beyond its end.
check_cxx_source_compiles("#include <string>
#if !defined(__GLIBCXX__) || !_GLIBCXX_USE_CXX11_ABI
#error the strings of other standard libraries may follow other rules
#endif
int main() { return sizeof(std::string) >= 16 ? 0 : 1; }"
  DATABASE_ENTRY_HAS_STRING_LAYOUT)
check_cxx_source_compiles("#include <emmintrin.h>
#ifndef __SSE2__
#error the processor may not have it
#endif
int main() { return _mm_movemask_epi8(_mm_setzero_si128()); }"
  DATABASE_ENTRY_HAS_SSE2)

set(DATABASE_ENTRY_ARCHIVING_DEFINITIONS "")
foreach(found IN ITEMS UNLOCKED_CALLS LONG_OFFSETS)
  if(DATABASE_ENTRY_HAS_${found})
    list(APPEND DATABASE_ENTRY_ARCHIVING_DEFINITIONS DATABASE_ENTRY_${found})
  endif()
endforeach()
foreach(found IN ITEMS STREAM_FIELDS STRING_LAYOUT SSE2)
  if(DATABASE_ENTRY_HAS_${found} AND NOT DATABASE_ENTRY_PORTABLE_STREAMS)
    list(APPEND DATABASE_ENTRY_ARCHIVING_DEFINITIONS DATABASE_ENTRY_${found})
  endif()
endforeach()
