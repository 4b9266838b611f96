# SPDX-License-Identifier: MIT
# The package is found by pkg-config, also where it was not configured to stand; and what
# README says of it, letter by letter, builds the program shown there and runs it.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

kp_pkg_config(version ${PREFIX} --modversion)
if(NOT version STREQUAL VERSION)
  message(FATAL_ERROR "the version is ${version}, not ${VERSION}")
endif()
kp_consume_with_pkg_config(${PREFIX} ${WORK}/pkgconfig ${PREFIX}/${LIBDIR})

file(READ ${SOURCE}/README.md readme)
if(NOT readme MATCHES "```sh\n([^`]*pkg-config --cflags[^`]*)```")
  message(FATAL_ERROR "README shows no pkg-config")
endif()
set(directory ${WORK}/readme)
file(REMOVE_RECURSE ${directory})
file(WRITE ${directory}/commands.sh "${CMAKE_MATCH_1}")
file(COPY ${SOURCE}/examples DESTINATION ${directory})
kp_run("the commands of README" OUTPUT said COMMAND ${CMAKE_COMMAND} -E env
  --unset=LD_LIBRARY_PATH PKG_CONFIG_PATH=${PREFIX}/${LIBDIR}/pkgconfig
  ${CMAKE_COMMAND} -E chdir ${directory} sh -e commands.sh)
file(READ ${SOURCE}/examples/outline/expected-output.txt expected)
if(NOT said STREQUAL expected)
  message(FATAL_ERROR "they printed\n${said}\ninstead of\n${expected}")
endif()
