# SPDX-License-Identifier: MIT
# The package is found by CMake from another project, built against and run.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

kp_consume_with_cmake(${PREFIX} ${WORK}/findpackage)
