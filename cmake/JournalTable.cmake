# How a journal list becomes the constant table of a target.

# The program that checks a list and writes the source of its table.
function(journal_table_generator)
  add_executable(database_entry_journal_table_generator journal_table_generator.cpp journal_list_format.cpp)
  target_compile_features(database_entry_journal_table_generator PRIVATE cxx_std_20)
  target_include_directories(database_entry_journal_table_generator PRIVATE ${PROJECT_SOURCE_DIR})
  room_warnings(database_entry_journal_table_generator)
endfunction()

# journal_table(TARGET LIST FILE)
# Adds the table made from FILE to TARGET. A list that is not of the layout stops the build with file, line
# and column; one that is missing stops the configuration, unless the build itself makes it.
function(journal_table target)
  cmake_parse_arguments(PARSE_ARGV 1 TABLE "" "LIST" "")
  get_source_file_property(is_made ${TABLE_LIST} GENERATED)
  if(NOT is_made AND NOT EXISTS ${TABLE_LIST})
    message(FATAL_ERROR "The journal list ${TABLE_LIST} does not exist. "
      "Set DATABASE_ENTRY_JOURNAL_LIST to a list, or leave it unset for the one in data/.")
  endif()
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${target}_journal_table_lines.cpp)
  add_custom_command(OUTPUT ${source}
    COMMAND database_entry_journal_table_generator ${TABLE_LIST} ${source}
    DEPENDS database_entry_journal_table_generator ${TABLE_LIST}
    COMMENT "Journal table of ${target}"
    VERBATIM)
  # The target may belong to another folder, which sees the source but not the command that makes it.
  add_custom_target(${target}_journal_table DEPENDS ${source})
  add_dependencies(${target} ${target}_journal_table)
  target_sources(${target} PRIVATE ${source})
endfunction()
