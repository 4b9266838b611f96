# SPDX-License-Identifier: MIT
# Fails unless COMMAND, a list, run in DIRECTORY, ends with the exit code RESULT and prints exactly
# what stands in the file EXPECTED.
execute_process(COMMAND ${COMMAND} WORKING_DIRECTORY ${DIRECTORY}
  OUTPUT_VARIABLE actual RESULT_VARIABLE result)
file(READ ${EXPECTED} expected)
if(NOT result EQUAL RESULT OR NOT actual STREQUAL expected)
  message(FATAL_ERROR "exit code ${result}, printed\n${actual}\ninstead of ${RESULT} and\n${expected}")
endif()
