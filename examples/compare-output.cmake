# Fails unless PROGRAM succeeds and prints exactly what stands in the file EXPECTED.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE actual RESULT_VARIABLE result)
file(READ ${EXPECTED} expected)
if(NOT result EQUAL 0 OR NOT actual STREQUAL expected)
  message(FATAL_ERROR "exit code ${result}, printed\n${actual}\ninstead of\n${expected}")
endif()
