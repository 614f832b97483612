# A shared library has its SONAME, and exports nothing but classes and functions of the global namespace: what
# is in a namespace of ours (regex_detail, ...) is inner. One is shared by the inner headers of all
# libraries, the archive's.
#   cmake -DNM=nm -DREADELF=readelf -DLIBRARY=libx.so -DVERSION=1 -P check_exports.cmake
execute_process(COMMAND ${READELF} -d ${LIBRARY} OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
get_filename_component(name ${LIBRARY} NAME)
string(REGEX REPLACE "\\.so.*" ".so.${VERSION}" soname "${name}")
string(FIND "${dynamic}" "Library soname: [${soname}]" at)
if(at EQUAL -1)
  message(FATAL_ERROR "${name}: the SONAME is not ${soname}")
endif()

execute_process(COMMAND ${NM} -DC --defined-only ${LIBRARY} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE ";" "," symbols "${symbols}")
string(REPLACE "\n" ";" symbols "${symbols}")
set(foreign "")
foreach(symbol IN LISTS symbols)
  # V and W are weak: inline functions and tables that every user has a copy of.
  if(symbol MATCHES " [TDBR] (.*)")
    set(symbol "${CMAKE_MATCH_1}")
    if(symbol MATCHES "^[a-z][a-z_0-9]*::|anonymous namespace" AND NOT symbol MATCHES "^archiving::")
      list(APPEND foreign "${symbol}")
    endif()
  endif()
endforeach()
if(foreign)
  list(JOIN foreign "\n  " foreign)
  message(FATAL_ERROR "${name} exports what is inner:\n  ${foreign}")
endif()
