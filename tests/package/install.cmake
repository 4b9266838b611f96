# SPDX-License-Identifier: MIT
# Installs the build BUILD into the empty prefix PREFIX, removes it again, of which nothing must be left
# but what others put beside it, and installs it for the tests that use it.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

file(REMOVE_RECURSE ${PREFIX})
set(install COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX})
kp_run("installing the build" ${install})

set(foreign ${PREFIX}/bin/foreign ${PREFIX}/include/kpgeometry/foreign.h)
file(TOUCH ${foreign})
set(uninstall COMMAND ${CMAKE_COMMAND} --build ${BUILD} --target uninstall)
kp_run("uninstalling it" ${uninstall})
file(GLOB_RECURSE left ${PREFIX}/*)
if(NOT left STREQUAL foreign)
  message(FATAL_ERROR "uninstalling left\n${left}\ninstead of\n${foreign}")
endif()
foreach(folder IN ITEMS share/kpgeometry ${LIBDIR}/cmake/KpGeometry)
  if(EXISTS ${PREFIX}/${folder})
    message(FATAL_ERROR "uninstalling left the folder ${folder}")
  endif()
endforeach()
execute_process(${uninstall} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(result EQUAL 0)
  message(FATAL_ERROR "what is not installed was uninstalled:\n${output}")
endif()
kp_expect_match("${output}" "nothing is known to be installed" "uninstalling twice says so")

file(REMOVE_RECURSE ${PREFIX})
kp_run("installing the build again" ${install})
foreach(schema IN ITEMS geometry.rng shapes.rng check.schema.json colour.schema.json
    diff.schema.json digest.schema.json fit.schema.json info.schema.json pages.schema.json
    recent.schema.json units.schema.json)
  if(NOT EXISTS ${PREFIX}/share/kpgeometry/${schema})
    message(FATAL_ERROR "the schema ${schema} is not installed")
  endif()
endforeach()
file(GLOB vectors RELATIVE ${SOURCE}/vectors ${SOURCE}/vectors/*.json*)
list(TRANSFORM vectors PREPEND share/kpgeometry/vectors/)
foreach(file IN ITEMS
    ${vectors}
    share/kpgeometry/vectors/manifest.json
    bin/kpgeom
    bin/kpshapes
    share/applications/kpshapes.desktop
    share/icons/hicolor/scalable/apps/kpshapes.svg
    share/bash-completion/completions/kpgeom
    share/fish/vendor_completions.d/kpgeom.fish
    share/zsh/site-functions/_kpgeom
    share/man/man1/kpgeom.1
    share/man/man1/kpshapes.1)
  if(NOT EXISTS ${PREFIX}/${file})
    message(FATAL_ERROR "${file} is not installed")
  endif()
endforeach()
kp_run("starting the editor" COMMAND ${PREFIX}/bin/kpshapes --version)
