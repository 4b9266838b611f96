# SPDX-License-Identifier: MIT
# gdb finds the script of the installed package by the two lines that docs/debugging.md names, and
# shows the objects of debugged.cpp with it. No script reports an error, whatever it reads.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

if(NOT GDB)
  message(FATAL_ERROR "gdb was not found when the build was configured; Debian has it in the "
    "package gdb")
endif()
set(directory ${WORK}/gdb)
file(MAKE_DIRECTORY ${directory})
kp_pkg_config(cflags ${PREFIX} --cflags)
kp_pkg_config(libs ${PREFIX} --libs)
kp_run("compiling what is debugged" COMMAND ${CXX} -std=c++11 -g -fPIC ${cflags}
  ${CMAKE_CURRENT_LIST_DIR}/debugged.cpp -o ${directory}/debugged ${libs})

set(scripts ${PREFIX}/share/gdb/auto-load)
execute_process(COMMAND ${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${PREFIX}/${LIBDIR} LC_ALL=C.UTF-8
    KPGEOMETRY_PACKAGE_TESTS=${CMAKE_CURRENT_LIST_DIR} KPGEOMETRY_SAID=${directory}/said
    ${GDB} -nx -batch
    -iex "add-auto-load-scripts-directory ${scripts}" -iex "add-auto-load-safe-path ${scripts}"
    -x ${CMAKE_CURRENT_LIST_DIR}/debugged.py ${directory}/debugged
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
message(STATUS "gdb: ${result}\n${output}\n${errors}")
if(errors MATCHES "ptrace: Operation not permitted")
  message(STATUS "skipped: gdb may not trace programs here")
  return()
endif()
kp_expect_match("${output}" "gdb shows all of them" "objects are shown as expected")
if("${output}${errors}" MATCHES "Python|Traceback")
  message(FATAL_ERROR "a script failed")
endif()
