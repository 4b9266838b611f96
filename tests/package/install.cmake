# Installs the build BUILD into the empty prefix PREFIX, and its companion libraries alone
# into COMPANIONS_PREFIX.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

file(REMOVE_RECURSE ${PREFIX} ${COMPANIONS_PREFIX})
kp_run("installing the build" COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX})
kp_run("installing the companion libraries" COMMAND
  ${CMAKE_COMMAND} --install ${BUILD}/companions --prefix ${COMPANIONS_PREFIX})
foreach(schema IN ITEMS geometry.rng shapes.rng)
  if(NOT EXISTS ${PREFIX}/share/kpgeometry/${schema})
    message(FATAL_ERROR "the schema ${schema} is not installed")
  endif()
endforeach()
