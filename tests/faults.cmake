# SPDX-License-Identifier: MIT
# What becomes of files when calls to the system fail. No sanitizer goes with a library that takes
# the place of the C library's functions.
if(KPGEOMETRY_SANITIZERS)
  return()
endif()

add_library(kpgeometry_faults MODULE faults/faults.cpp)
target_link_libraries(kpgeometry_faults PRIVATE kpgeometry_settings ${CMAKE_DL_LIBS})
set_target_properties(kpgeometry_faults PROPERTIES CXX_VISIBILITY_PRESET default)

add_executable(kpgeometry_saves faults/saves.cpp)
target_link_libraries(kpgeometry_saves PRIVATE kpgeometry_settings kpshapes_files kpgeomprocess)

kpgeometry_add_test(tst_faults UNOPTIMIZED
  LIBRARIES Qt5::Gui util
  DEFINITIONS
    KPGEOM_EXECUTABLE="$<TARGET_FILE:kpgeom>"
    KPGEOMETRY_FAULTS="$<TARGET_FILE:kpgeometry_faults>"
    KPGEOMETRY_SAVES="$<TARGET_FILE:kpgeometry_saves>"
  TIMEOUT 600)
add_dependencies(tst_faults kpgeom kpgeometry_faults kpgeometry_saves)
