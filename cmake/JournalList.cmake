# Checks a journal list and writes the C++ source of its table.
#
#   cmake -DLIST=data/journal_list.txt -DSOURCE=lines.cpp -P cmake/JournalList.cmake
#
# The build runs it. It is a script and no program of the project, because a build for another machine could not
# run that. A list that is not as it has to be is told as "LIST:LINE:COLUMN: error: REASON", counted from 1.
#
# A list is 1418 lines of the layout in database_entry/records/journal_table.h, each ended by a line feed; the
# coden number of each is its position. A title has no control characters and no blank at its end; it may be empty.
#
# A text is kept here as its bytes, each two hexadecimal digits and a blank ("4a 43 "): then nothing in it means
# anything to CMake, and three characters are one column.
cmake_minimum_required(VERSION 3.25)

set(JOURNAL_LIST_LINES 1418)
set(JOURNAL_LIST_SHORTEST 33)  # characters, up to the status flag

function(bytes_of_text result text)
  string(HEX "${text}" bytes)
  string(REGEX REPLACE "(..)" "\\1 " bytes "${bytes}")
  set(${result} "${bytes}" PARENT_SCOPE)
endfunction()

function(zero_padded result number width)
  string(LENGTH "${number}" digits)
  math(EXPR missing "${width} - ${digits}")
  string(REPEAT "0" ${missing} zeros)
  bytes_of_text(bytes "${zeros}${number}")
  set(${result} "${bytes}" PARENT_SCOPE)
endfunction()

# How many columns the expression covers from the start of the bytes on.
function(columns_that_match result expression bytes)
  string(REGEX MATCH "^x${expression}" start "x${bytes}")  # CMake takes an empty match for a mistake
  string(LENGTH "${start}" length)
  math(EXPR columns "(${length} - 1) / 3")
  set(${result} ${columns} PARENT_SCOPE)
endfunction()

function(cut_columns result bytes first width)
  math(EXPR begin "3 * ${first}")
  math(EXPR length "3 * ${width}")
  string(SUBSTRING "${bytes}" ${begin} ${length} part)
  set(${result} "${part}" PARENT_SCOPE)
endfunction()

# Ends the function that it stands in, with the problem as its result. Columns are counted from 0 up to here.
macro(refuse column reason)
  math(EXPR column_from_one "${column} + 1")
  set(${result} "${column_from_one}: error: ${reason}" PARENT_SCOPE)
  return()
endmacro()

# The first control character of a line.
function(find_control_character result line size)
  columns_that_match(plain "(([2-689a-f][0-9a-f]|7[0-9a-e]) )*" "${line}")
  if(plain EQUAL size)
    return()
  endif()
  cut_columns(byte "${line}" ${plain} 1)
  if(byte STREQUAL "0d ")
    refuse(${plain} "a carriage return; lines end with a line feed alone (try: dos2unix FILE)")
  elseif(byte STREQUAL "09 ")
    refuse(${plain} "a tab; columns are filled with blanks")
  endif()
  refuse(${plain} "a control character")
endfunction()

# Blanks, then a number that ends with the column.
function(find_bad_number result line name first width sign)
  cut_columns(number "${line}" ${first} ${width})
  if(number MATCHES "^(20 )*${sign}(3[0-9] )+$")
    return()
  endif()
  columns_that_match(place "(20 )*${sign}(3[0-9] )*" "${number}")
  math(EXPR last "${width} - 1")
  if(place GREATER last)
    set(place ${last})
  endif()
  math(EXPR column "${first} + ${place}")
  math(EXPR end "${first} + ${width}")
  refuse(${column} "${name} has to end in column ${end}, with nothing but blanks before it")
endfunction()

# What is wrong with the line of this number, as "COLUMN: error: REASON"; nothing when it is right.
function(find_bad_column result number line)
  set(${result} "" PARENT_SCOPE)
  string(LENGTH "${line}" size)
  math(EXPR size "${size} / 3")
  set(problem "")
  find_control_character(problem "${line}" ${size})
  if(problem)
    set(${result} "${problem}" PARENT_SCOPE)
    return()
  endif()
  if(size LESS JOURNAL_LIST_SHORTEST)
    refuse(${size} "the line ends here; it needs at least ${JOURNAL_LIST_SHORTEST} characters, up to its status flag")
  endif()

  zero_padded(expected ${number} 4)
  cut_columns(coden "${line}" 0 4)
  if(NOT coden STREQUAL expected)
    string(REGEX REPLACE "3(.) " "\\1" digits "${expected}")
    refuse(0 "expected ${digits}, the position of the line in the list")
  endif()
  cut_columns(separator "${line}" 4 1)
  if(NOT separator STREQUAL "20 ")
    refuse(4 "expected a blank")
  endif()

  cut_columns(international_coden "${line}" 5 6)
  columns_that_match(alphanumeric "((3[0-9]|[46][1-9a-f]|[57][0-9a]) )*" "${international_coden}")
  if(alphanumeric LESS 6)
    math(EXPR column "5 + ${alphanumeric}")
    refuse(${column} "a CODEN is six letters and digits")
  endif()
  zero_padded(expected ${number} 6)
  if(international_coden MATCHES "^(3[0-9] )+$" AND NOT international_coden STREQUAL expected)
    string(REGEX REPLACE "3(.) " "\\1" digits "${expected}")
    refuse(5 "expected ${digits}, the number of the line, where there is no CODEN")
  endif()

  find_bad_number(problem "${line}" "the year" 11 6 "")
  foreach(first IN ITEMS 17 21 25)
    if(NOT problem)
      find_bad_number(problem "${line}" "the number" ${first} 4 "(2d )?")
    endif()
  endforeach()
  if(problem)
    set(${result} "${problem}" PARENT_SCOPE)
    return()
  endif()

  cut_columns(status_flag "${line}" 29 4)
  if(NOT status_flag MATCHES "^20 20 (20|2d) 31 $")
    refuse(29 "the status flag is 1 or -1, and ends in column 33")
  endif()
  if(line MATCHES "20 $")
    math(EXPR last "${size} - 1")
    refuse(${last} "the line ends with a blank")
  endif()
endfunction()

# What is wrong with a list, as "LINE:COLUMN: error: REASON"; nothing when it is right.
function(find_bad_line result bytes)
  set(${result} "" PARENT_SCOPE)
  set(all_lines "a journal list has ${JOURNAL_LIST_LINES} lines")
  string(REPLACE "0a " ";" lines "${bytes}")
  list(LENGTH lines count)  # one more than line feeds: the last element is what comes after the last of them
  set(number 0)
  foreach(line IN LISTS lines)
    math(EXPR number "${number} + 1")
    if(number EQUAL count AND line STREQUAL "")
      math(EXPR number "${number} - 1")
      break()
    endif()
    if(number GREATER JOURNAL_LIST_LINES)
      set(${result} "${number}:1: error: one line too many; ${all_lines}" PARENT_SCOPE)
      return()
    endif()
    find_bad_column(problem ${number} "${line}")
    if(NOT problem AND number EQUAL count)
      string(LENGTH "${line}" size)
      math(EXPR column "${size} / 3 + 1")
      set(problem "${column}: error: the last line has no line feed")
    endif()
    if(problem)
      set(${result} "${number}:${problem}" PARENT_SCOPE)
      return()
    endif()
  endforeach()
  if(number LESS JOURNAL_LIST_LINES)
    math(EXPR number "${number} + 1")
    set(${result} "${number}:1: error: the list ends here; ${all_lines}" PARENT_SCOPE)
  endif()
endfunction()

# C++ source that defines journal_table::lines.
function(journal_table_source result bytes)
  # Each byte as an escape, and a string literal that ends after it, so that no digit lengthens the escape. Then
  # letters, digits, blanks, dots and hyphens as themselves: nothing else is safe from meaning something.
  string(REGEX REPLACE "(..) " "\\\\x\\1\"\"" literals "${bytes}")
  foreach(character IN ITEMS A B C D E F G H I J K L M N O P Q R S T U V W X Y Z a b c d e f g h i j k l m n o p q r s
                             t u v w x y z 0 1 2 3 4 5 6 7 8 9 " " . -)
    string(HEX "${character}" hex)
    string(REPLACE "\\x${hex}\"\"" "${character}" literals "${literals}")
  endforeach()
  string(REPLACE "\\x0a\"\"" ";" literals "${literals}")
  string(REPLACE "0a " ";" lines "${bytes}")
  string(CONCAT source
    "// Made by the build from the journal list.\n"
    "#include <database_entry/records/journal_table.h>\n\n"
    "constinit const std::array<std::string_view, journal_table::line_count> journal_table::lines = {\n")
  foreach(line literal IN ZIP_LISTS lines literals)
    if(NOT line STREQUAL "")
      string(LENGTH "${line}" size)
      math(EXPR size "${size} / 3")
      string(APPEND source "    std::string_view(\"${literal}\", ${size}),\n")
    endif()
  endforeach()
  set(${result} "${source}};\n" PARENT_SCOPE)
endfunction()

# Gives the bytes of a file.
function(read_bytes result file)
  if(NOT EXISTS "${file}")
    message(FATAL_ERROR "${file}: error: cannot be read")
  endif()
  file(READ "${file}" bytes HEX)
  string(REGEX REPLACE "(..)" "\\1 " bytes "${bytes}")
  set(${result} "${bytes}" PARENT_SCOPE)
endfunction()

if(NOT CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  return()  # included for its functions
endif()
if(NOT DEFINED LIST OR NOT DEFINED SOURCE)
  message(FATAL_ERROR "usage: cmake -DLIST=FILE -DSOURCE=FILE -P JournalList.cmake")
endif()
read_bytes(list_bytes "${LIST}")
find_bad_line(problem "${list_bytes}")
if(problem)
  message(NOTICE "${LIST}:${problem}")
  message(FATAL_ERROR "The journal list is not of the layout that the library is built with.")
endif()
journal_table_source(source "${list_bytes}")
file(WRITE "${SOURCE}.part" "${source}")
file(RENAME "${SOURCE}.part" "${SOURCE}")
