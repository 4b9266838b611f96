# SPDX-License-Identifier: MIT
# What the package tests share. Each is run by cmake -P and stops at the first fault.
cmake_minimum_required(VERSION 3.25)

# kp_run(<description> [OUTPUT variable] COMMAND command...)
#
# Runs a command and stops the test with everything it said when it fails or is missing.
function(kp_run description)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "OUTPUT" "COMMAND")
  execute_process(COMMAND ${arg_COMMAND}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT result EQUAL 0)
    list(JOIN arg_COMMAND " " command)
    message(FATAL_ERROR "${description} failed (${result}):\n${command}\n${output}\n${errors}")
  endif()
  message(STATUS "${description}: done")
  if(arg_OUTPUT)
    set(${arg_OUTPUT} "${output}" PARENT_SCOPE)
  endif()
endfunction()

# kp_pkg_config(<variable> <prefix> <flag>...): what pkg-config says of the package there.
function(kp_pkg_config variable prefix)
  if(NOT PKG_CONFIG)
    message(FATAL_ERROR "pkg-config was not found when the build was configured; "
      "Debian has it in the package pkgconf")
  endif()
  kp_run("pkg-config ${ARGN}" OUTPUT flags COMMAND ${CMAKE_COMMAND} -E env
    PKG_CONFIG_PATH=${prefix}/${LIBDIR}/pkgconfig ${PKG_CONFIG} ${ARGN} kpgeometry)
  string(STRIP "${flags}" flags)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  set(${variable} ${flags} PARENT_SCOPE)
endfunction()

# kp_expect_match(<text> <regular expression> <what it means>)
function(kp_expect_match text expression meaning)
  if(NOT text MATCHES "${expression}")
    message(FATAL_ERROR "not so: ${meaning} (${expression}) in\n${text}")
  endif()
endfunction()

# kp_expect_consent(<what the consumer said>)
function(kp_expect_consent said)
  kp_expect_match("${said}" "all is well" "the consumer is content")
  string(REPLACE "." "\\." version "${VERSION}")
  kp_expect_match("${said}" "version ${version}\n" "the headers name the version")
endfunction()

# kp_consume_with_cmake(<prefix> <directory>)
#
# Builds the consumer in `directory` against the package in `prefix`, as CMake finds it, and
# runs it. Nothing tells ld.so where the libraries are: the package must.
function(kp_consume_with_cmake prefix directory)
  file(REMOVE_RECURSE ${directory})
  kp_run("configuring the consumer" COMMAND ${CMAKE_COMMAND} -S ${CONSUMER} -B ${directory}
    -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_PREFIX_PATH=${prefix})
  kp_run("building the consumer" COMMAND ${CMAKE_COMMAND} --build ${directory})
  kp_run("running the consumer" OUTPUT said COMMAND ${directory}/consumer)
  kp_expect_consent("${said}")
endfunction()

# kp_consume_with_pkg_config(<prefix> <directory> <library path>)
#
# The same by pkg-config, which knows of no run path: ld.so is given `library path`.
function(kp_consume_with_pkg_config prefix directory library_path)
  file(REMOVE_RECURSE ${directory})
  file(MAKE_DIRECTORY ${directory})
  kp_pkg_config(cflags ${prefix} --cflags)
  kp_pkg_config(libs ${prefix} --libs)
  kp_run("compiling the consumer" COMMAND ${CXX} -std=c++11 ${cflags}
    ${CONSUMER}/main.cpp -o ${directory}/consumer ${libs})
  kp_run("running the consumer" OUTPUT said COMMAND ${CMAKE_COMMAND} -E env
    LD_LIBRARY_PATH=${library_path} ${directory}/consumer)
  kp_expect_consent("${said}")
endfunction()
