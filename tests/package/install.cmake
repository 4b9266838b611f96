# SPDX-License-Identifier: MIT
# Installs the build BUILD into the empty prefix PREFIX.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

file(REMOVE_RECURSE ${PREFIX})
kp_run("installing the build" COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX})
foreach(schema IN ITEMS geometry.rng shapes.rng)
  if(NOT EXISTS ${PREFIX}/share/kpgeometry/${schema})
    message(FATAL_ERROR "the schema ${schema} is not installed")
  endif()
endforeach()
foreach(file IN ITEMS
    bin/kpgeom
    bin/kpshapes
    share/applications/kpshapes.desktop
    share/icons/hicolor/scalable/apps/kpshapes.svg
    share/man/man1/kpgeom.1
    share/man/man1/kpshapes.1)
  if(NOT EXISTS ${PREFIX}/${file})
    message(FATAL_ERROR "${file} is not installed")
  endif()
endforeach()
kp_run("starting the editor" COMMAND ${PREFIX}/bin/kpshapes --version)
