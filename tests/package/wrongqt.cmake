# SPDX-License-Identifier: MIT
# Whoever has Qt 6, or no Qt, is told so in plain words: by the package when CMake looks for it, and
# by each header.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

# kp_expect_refusal(<expression> <what it means> COMMAND command...): it fails, and says why.
function(kp_expect_refusal expression meaning)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "COMMAND")
  execute_process(COMMAND ${arg_COMMAND}
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(result EQUAL 0)
    message(FATAL_ERROR "not so: ${meaning}; it succeeded")
  endif()
  string(REGEX REPLACE "[ \n]+" " " output "${output}") # CMake breaks lines
  kp_expect_match("${output}" "${expression}" "${meaning}")
endfunction()

set(directory ${WORK}/wrongqt)
file(REMOVE_RECURSE ${directory})

set(configure ${CMAKE_COMMAND} -S ${SOURCE}/tests/package/wrongqt -G ${GENERATOR}
  -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_PREFIX_PATH=${PREFIX})
kp_expect_refusal("this project uses Qt 6: the library's interface passes QMatrix"
  "a project that has found Qt 6 is refused"
  COMMAND ${configure} -B ${directory}/qt6 -DUSE_QT6=ON)
kp_expect_refusal("this project uses Qt 6: the library's interface passes QMatrix"
  "a project whose default is Qt 6 is refused"
  COMMAND ${configure} -B ${directory}/qt6default -DQT_DEFAULT_MAJOR_VERSION=6)
kp_expect_refusal("needs Qt 5.15 \\(Core, Gui, Xml\\), which was not found; Qt 6 will not do"
  "a project without Qt is refused"
  COMMAND ${configure} -B ${directory}/none -DCMAKE_DISABLE_FIND_PACKAGE_Qt5=ON)

# As much of Qt 6 as the headers see before they stop.
file(WRITE ${directory}/include/QtGlobal "#define QT_VERSION 0x060000\n")
set(include_dir ${PREFIX}/include/kpgeometry)
file(GLOB headers RELATIVE ${include_dir} ${include_dir}/*)
foreach(header IN LISTS headers)
  file(WRITE ${directory}/header.cpp "#include <${header}>\n")
  kp_expect_refusal("error:? \"?kpgeometry needs Qt 5.15: its interface passes QMatrix"
    "${header} refuses Qt 6"
    COMMAND ${CXX} -std=c++11 -fsyntax-only -I${directory}/include -I${include_dir}
      ${directory}/header.cpp)
endforeach()

# What passes no Qt types needs none.
file(WRITE ${directory}/digest.cpp "#include <md5.h>\nunsigned long words = sizeof(MD5);\n")
kp_run("the digest without Qt" COMMAND ${CXX} -std=c++11 -fsyntax-only -I${include_dir}
  ${directory}/digest.cpp)
