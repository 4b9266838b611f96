# SPDX-License-Identifier: MIT
# Each installed header compiles with CXX alone, included twice, as C++11 without a warning;
# and the installed headers are the public ones of the source tree SOURCE. Comparisons of colours
# mean the same from C++11 to C++20, which looks for operators the other way round, too.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(include_dir ${PREFIX}/include/kpgeometry)
file(GLOB installed RELATIVE ${include_dir} ${include_dir}/*)
file(GLOB_RECURSE public ${SOURCE}/src/*.h ${SOURCE}/companions/*.h)
list(FILTER public EXCLUDE REGEX "_p\\.h$")
list(TRANSFORM public REPLACE "^.*/" "")
list(APPEND public kpbx_export.h kpgeometry_export.h kpgeometryversion.h kpgraphics_export.h)
list(SORT public)
list(SORT installed)
if(NOT installed STREQUAL public)
  message(FATAL_ERROR "installed are\n${installed}\nand public are\n${public}")
endif()

# Qt's headers are the system's: their warnings are not ours.
kp_pkg_config(cflags ${PREFIX} --cflags)
list(TRANSFORM cflags REPLACE "^-I(.*/qt5.*)$" "-isystem\\1")

# A directory for each compiler: tests run side by side.
cmake_path(GET CXX FILENAME compiler)
set(directory ${WORK}/headers-${compiler})
file(MAKE_DIRECTORY ${directory})
foreach(header IN LISTS installed)
  set(unit ${directory}/${header}.cpp)
  file(WRITE ${unit} "#include <${header}>\n#include <${header}>\n")
  kp_run("${header}" COMMAND ${CXX} -std=c++11 -Wall -Wextra -Wpedantic -Werror
    -fsyntax-only ${cflags} ${unit})
endforeach()

kp_pkg_config(libs ${PREFIX} --libs)
foreach(standard IN ITEMS 11 17 20)
  set(comparison ${directory}/comparison-${standard})
  kp_run("comparing colours in C++${standard}" COMMAND ${CXX} -std=c++${standard} -Wall -Wextra
    -Wpedantic -Werror -fPIC ${cflags} ${SOURCE}/tests/package/comparison.cpp -o ${comparison}
    ${libs})
  kp_run("the comparisons of C++${standard}" COMMAND ${CMAKE_COMMAND} -E env
    LD_LIBRARY_PATH=${PREFIX}/${LIBDIR} ${comparison})
endforeach()
