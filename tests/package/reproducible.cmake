# SPDX-License-Identifier: MIT
# Where the build stands makes no difference to what is installed: the libraries, built once more in
# a folder whose name is longer, are the same to the byte, and no file tells of either folder.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

set(directory "${WORK}/a folder with a rather longer name than that of the first build has")
set(build "${directory}/build")
set(prefix "${directory}/prefix")
file(REMOVE_RECURSE "${directory}")

# Compiled indeed: a cache would give the objects of the first build.
kp_run("configuring again" COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${build} -G ${GENERATOR}
  -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_COMPILER_LAUNCHER= -DCMAKE_CXX_FLAGS=${CXX_FLAGS}
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_LIBDIR=${LIBDIR} -DBUILD_TESTING=OFF
  -DKPGEOMETRY_HARDENING=${HARDENING} -DKPGEOMETRY_PRECOMPILED_HEADERS=${PRECOMPILED_HEADERS})
kp_run("building again" COMMAND ${CMAKE_COMMAND} --build ${build} --target kpgeometry)
foreach(part IN ITEMS src companions)
  kp_run("installing again" COMMAND ${CMAKE_COMMAND} --install ${build}/${part} --prefix ${prefix})
endforeach()

file(GLOB_RECURSE files LIST_DIRECTORIES OFF RELATIVE "${prefix}" "${prefix}/*")
list(FILTER files INCLUDE REGEX "\\.so\\.${VERSION}$|\\.h$")
list(LENGTH files count)
if(count LESS 20)
  message(FATAL_ERROR "only ${count} files were installed: ${files}")
endif()
foreach(file IN LISTS files)
  kp_run("comparing ${file}" COMMAND ${CMAKE_COMMAND} -E compare_files
    ${PREFIX}/${file} ${prefix}/${file})
endforeach()

foreach(folder IN ITEMS ${SOURCE} ${BUILD} ${WORK})
  execute_process(COMMAND grep -rlF ${folder} ${PREFIX} "${prefix}"
    RESULT_VARIABLE result OUTPUT_VARIABLE telling)
  if(NOT result EQUAL 1) # 0 is found, 2 an error
    message(FATAL_ERROR "${folder} is named in\n${telling}")
  endif()
endforeach()
