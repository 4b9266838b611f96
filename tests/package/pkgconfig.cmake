# The package is found by pkg-config, also where it was not configured to stand.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

kp_pkg_config(version ${PREFIX} --modversion)
if(NOT version STREQUAL VERSION)
  message(FATAL_ERROR "the version is ${version}, not ${VERSION}")
endif()
kp_consume_with_pkg_config(${PREFIX} ${WORK}/pkgconfig ${PREFIX}/${LIBDIR})
