# SPDX-License-Identifier: MIT
# The library is built from SOURCE against the companion libraries in COMPANIONS_PREFIX, which
# are others than its own, as users build it, installed, and consumed.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(build ${WORK}/foreign-build)
set(prefix ${WORK}/foreign-prefix)
set(companions ${COMPANIONS_PREFIX}/${LIBDIR})
file(REMOVE_RECURSE ${build} ${prefix})

kp_run("configuring the library" COMMAND ${CMAKE_COMMAND} --preset user -S ${SOURCE} -B ${build}
  -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
  -DCMAKE_INSTALL_LIBDIR=${LIBDIR} -DKPGEOMETRY_COMPANIONS=${COMPANIONS_PREFIX}
  # The blur for one set of instructions: it has nothing to do with them.
  -DCMAKE_CXX_FLAGS=-DHWY_COMPILE_ONLY_STATIC)
file(READ ${build}/compile_commands.json commands)
kp_expect_match("${commands}" " -O[23] " "the preset for users optimises")
foreach(word IN ITEMS " -Werror" "tests/tst_")
  if(commands MATCHES "${word}")
    message(FATAL_ERROR "the preset for users compiles with or builds ${word}")
  endif()
endforeach()
kp_run("building the library" COMMAND ${CMAKE_COMMAND} --build ${build} --target kpgeometry)

set(library ${build}/src/libkpgeometry.so)
kp_run("readelf" OUTPUT dynamic COMMAND ${READELF} -d ${library})
kp_expect_match("${dynamic}" "NEEDED[^\n]*libKPBX\\.so\\.1" "libKPBX is needed")
kp_expect_match("${dynamic}" "NEEDED[^\n]*libkpgraphics\\.so\\.1" "libkpgraphics is needed")
kp_run("ldd" OUTPUT resolved COMMAND ldd ${library})
kp_expect_match("${resolved}" "libKPBX\\.so\\.1 => ${companions}/" "it is the foreign libKPBX")
kp_expect_match("${resolved}" "libkpgraphics\\.so\\.1 => ${companions}/"
  "it is the foreign libkpgraphics")
kp_run("nm" OUTPUT undefined COMMAND ${NM} -D --undefined-only ${library})
foreach(symbol IN ITEMS _ZN6KpPath12closeSubpathEv _ZN12QuarkManager15quarkFromStringERK7QString)
  kp_expect_match("${undefined}" "U ${symbol}\n" "the function is not the library's own")
endforeach()
file(GLOB_RECURSE own ${build}/libKPBX* ${build}/libkpgraphics*)
if(own)
  message(FATAL_ERROR "companion libraries were built: ${own}")
endif()

# The library and the package files, and not what else the source tree may build.
kp_run("installing the library" COMMAND ${CMAKE_COMMAND} --install ${build}/src --prefix ${prefix})
kp_run("installing the package files" COMMAND ${CMAKE_COMMAND} -DCMAKE_INSTALL_PREFIX=${prefix}
  -DCMAKE_INSTALL_LOCAL_ONLY=ON -P ${build}/cmake_install.cmake)
file(GLOB_RECURSE own ${prefix}/libKPBX* ${prefix}/libkpgraphics* ${prefix}/kppath.h)
if(own)
  message(FATAL_ERROR "companion libraries were installed: ${own}")
endif()

kp_consume_with_cmake(${prefix} ${WORK}/foreign-findpackage)
kp_consume_with_pkg_config(${prefix} ${WORK}/foreign-pkgconfig ${prefix}/${LIBDIR}:${companions})
