# SPDX-License-Identifier: MIT
# Each installed header compiles with CXX alone, included twice, as C++11 without a warning; all of
# them together do so as later standards, in either order and however little a client lets Qt and the
# compiler do; and the installed headers are the public ones of the source tree SOURCE. Comparisons of
# colours mean the same from C++11 to C++20, which looks for operators the other way round, too.
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

# kp_expect_silent(<name> <standard> <source> <option>...): no warning as C++<standard>.
function(kp_expect_silent name standard source)
  set(unit ${directory}/${name}.cpp)
  file(WRITE ${unit} "${source}")
  kp_run("${name} as C++${standard}" COMMAND ${CXX} -std=c++${standard}
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror ${ARGN}
    -fsyntax-only ${cflags} ${unit})
endfunction()

set(forwards "")
set(backwards "")
foreach(header IN LISTS installed)
  set(include "#include <${header}>\n")
  kp_expect_silent(${header} 11 "${include}${include}")
  string(APPEND forwards "${include}")
  string(PREPEND backwards "${include}")
endforeach()
kp_expect_silent(forwards 14 "${forwards}")
kp_expect_silent(backwards 17 "${backwards}" -fno-exceptions -fno-rtti
  -DQT_NO_KEYWORDS -DQT_NO_FOREACH -DQT_NO_CAST_FROM_ASCII -DQT_NO_CAST_TO_ASCII
  -DQT_NO_CAST_FROM_BYTEARRAY -DQT_NO_URL_CAST_FROM_STRING -DQT_STRICT_ITERATORS)
kp_expect_silent(forwards 20 "${forwards}")

kp_pkg_config(libs ${PREFIX} --libs)
foreach(standard IN ITEMS 11 17 20)
  set(comparison ${directory}/comparison-${standard})
  kp_run("comparing colours in C++${standard}" COMMAND ${CXX} -std=c++${standard} -Wall -Wextra
    -Wpedantic -Werror -fPIC ${cflags} ${SOURCE}/tests/package/comparison.cpp -o ${comparison}
    ${libs})
  kp_run("the comparisons of C++${standard}" COMMAND ${CMAKE_COMMAND} -E env
    LD_LIBRARY_PATH=${PREFIX}/${LIBDIR} ${comparison})
endforeach()
