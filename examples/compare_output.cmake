# Runs COMMAND (a list) and compares what it prints with the file EXPECTED, byte for byte.
execute_process(COMMAND ${COMMAND} OUTPUT_VARIABLE output RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "it ended with ${status}")
endif()
string(REPLACE "\r\n" "\n" output "${output}")  # Windows ends its lines so
file(READ "${EXPECTED}" expected)
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "expected, from ${EXPECTED}:\n${expected}\ngot:\n${output}")
endif()
