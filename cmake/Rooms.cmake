# How a room of the house becomes a target. Every library target is made here, so that warnings,
# visibility, versions and the installed header layout are the same everywhere.
include(GNUInstallDirs)

# All headers are installed below one versioned root, so that no generic folder name lands in a shared one.
set(DATABASE_ENTRY_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}/database_entry-${PROJECT_VERSION_MAJOR}")

# The warnings of our own targets, private to them. Errors only where developers ask for it: a newer compiler with
# warnings of its own never breaks a user's build.
option(DATABASE_ENTRY_WARNINGS_AS_ERRORS "Stop the build at a warning, as the presets do" OFF)
function(room_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wshadow
    $<$<BOOL:${DATABASE_ENTRY_WARNINGS_AS_ERRORS}>:-Werror>
    # g++ 12 sees overlapping copies in the standard library's own string concatenation (GCC bug 105651).
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>
    $<$<CXX_COMPILER_ID:Clang>:-Wimplicit-fallthrough -Wnon-virtual-dtor -Woverloaded-virtual -Wthread-safety>)
endfunction()

# room_library(NAME INCLUDE_ROOT DIR [USES target...] [COMPANION] [LINKS library...])
# A library `database_entry::NAME`; its file is named libdatabase_entry_NAME (or libdatabase_entry itself).
# A COMPANION is a library that the core knows nothing of, with a pkg-config module of its own; LINKS are the
# installed libraries that it alone needs, by the names that the linker knows (sqlite3), so that a program that links
# it statically finds them without their CMake packages.
function(room_library name)
  cmake_parse_arguments(PARSE_ARGV 1 ROOM "COMPANION" "INCLUDE_ROOT" "USES;LINKS")
  if(name STREQUAL "database_entry")
    set(target database_entry)
  else()
    set(target database_entry_${name})
  endif()
  add_library(${target})
  add_library(database_entry::${name} ALIAS ${target})
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_link_libraries(${target} PUBLIC ${ROOM_USES} PRIVATE ${ROOM_LINKS})
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${ROOM_INCLUDE_ROOT}> $<INSTALL_INTERFACE:${DATABASE_ENTRY_INCLUDEDIR}>)
  set_target_properties(${target} PROPERTIES
    EXPORT_NAME ${name}
    LINKER_LANGUAGE CXX
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    VERIFY_INTERFACE_HEADER_SETS ON
    ROOM_USES "${ROOM_USES}"
    ROOM_LINKS "${ROOM_LINKS}")
  # A unique symbol, of which inline functions of the standard library leave some, would keep the library in the
  # process for good when a program unloads it.
  target_compile_options(${target} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
  # Calls to another library need no stub, and calls within one may be inlined although the called is exported.
  target_compile_options(${target} PRIVATE -fno-plt -fno-semantic-interposition)
  room_warnings(${target})
  if(ROOM_COMPANION)
    set_property(GLOBAL APPEND PROPERTY DATABASE_ENTRY_COMPANIONS ${name})
  else()
    set_property(GLOBAL APPEND PROPERTY DATABASE_ENTRY_LIBRARIES ${target})
  endif()
endfunction()

# room_files(TARGET BASE_DIR DIR HEADERS file... SOURCES file...)
# Adds files of the current folder: headers are public and installed, sources are private.
function(room_files target)
  cmake_parse_arguments(PARSE_ARGV 1 ROOM "" "BASE_DIR" "HEADERS;SOURCES")
  target_sources(${target} PRIVATE ${ROOM_SOURCES})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${ROOM_BASE_DIR} FILES ${ROOM_HEADERS})
endfunction()
