# Prints the sources of this tree that a build compiles, one a line, each once: what generated code and
# checks of headers add is left out.
#   cmake -DCOMPILE_COMMANDS=build/clang/compile_commands.json -P cmake/ListSources.cmake
file(READ "${COMPILE_COMMANDS}" commands)
get_filename_component(build "${COMPILE_COMMANDS}" DIRECTORY)
get_filename_component(build "${build}" ABSOLUTE)
string(JSON count LENGTH "${commands}")
math(EXPR last "${count} - 1")
set(sources "")
foreach(index RANGE ${last})
  string(JSON file GET "${commands}" ${index} file)
  cmake_path(IS_PREFIX build "${file}" is_generated)
  if(NOT is_generated)
    list(APPEND sources "${file}")
  endif()
endforeach()
list(REMOVE_DUPLICATES sources)
list(JOIN sources "\n" text)
execute_process(COMMAND ${CMAKE_COMMAND} -E echo "${text}")
