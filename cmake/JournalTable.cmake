# How a journal list becomes the constant table of a target.

# journal_table(TARGET LIST FILE)
# Adds the table made from FILE to TARGET. A list that is not of the layout stops the build with file, line
# and column; one that is missing stops the configuration, unless the build itself makes it. No program of the
# project is run for it: JournalList.cmake is a script.
function(journal_table target)
  cmake_parse_arguments(PARSE_ARGV 1 TABLE "" "LIST" "")
  get_source_file_property(is_made ${TABLE_LIST} GENERATED)
  if(NOT is_made AND NOT EXISTS ${TABLE_LIST})
    message(FATAL_ERROR "The journal list ${TABLE_LIST} does not exist. "
      "Set DATABASE_ENTRY_JOURNAL_LIST to a list, or leave it unset for the one in data/.")
  endif()
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${target}_journal_table_lines.cpp)
  set(script ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/JournalList.cmake)
  add_custom_command(OUTPUT ${source}
    COMMAND ${CMAKE_COMMAND} -DLIST=${TABLE_LIST} -DSOURCE=${source} -P ${script}
    DEPENDS ${script} ${TABLE_LIST}
    COMMENT "Journal table of ${target}"
    VERBATIM)
  # The target may belong to another folder, which sees the source but not the command that makes it.
  add_custom_target(${target}_journal_table DEPENDS ${source})
  add_dependencies(${target} ${target}_journal_table)
  target_sources(${target} PRIVATE ${source})
endfunction()
