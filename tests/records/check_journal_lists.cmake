# cmake -DSCRIPT=JournalList.cmake -DFOLDER=DIR -P check_journal_lists.cmake
# Tells for each list in the folder, by name, what is wrong with it: many lists in the time of one start.
cmake_minimum_required(VERSION 3.25)
include(${SCRIPT})
file(GLOB lists ${FOLDER}/*)
foreach(list IN LISTS lists)
  read_bytes(bytes ${list})
  find_bad_line(problem "${bytes}")
  message(NOTICE "${problem}")
endforeach()
