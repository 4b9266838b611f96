# SPDX-License-Identifier: MIT
# What readers take for inputs of two sizes, counted by valgrind, which knows no sanitizers.
add_executable(growth growth/growth.cpp growth/kinds.cpp growth/kinds.h growth/picturekinds.cpp)
target_link_libraries(growth
  PRIVATE kpgeometry_settings kpgeomcore KpGeometry::kpgeometry KpGeometry::KPBX)
if(NOT KPGEOMETRY_SANITIZERS)
  add_test(NAME readers COMMAND ${PROJECT_SOURCE_DIR}/scripts/readers.py $<TARGET_FILE:growth> 1)
endif()
find_program(KPGEOMETRY_VALGRIND valgrind)
if(KPGEOMETRY_VALGRIND AND NOT KPGEOMETRY_SANITIZERS)
  foreach(kind IN ITEMS documents pictures)
    add_test(NAME growth_of_${kind} COMMAND
      ${PROJECT_SOURCE_DIR}/scripts/growth.py $<TARGET_FILE:growth> --${kind})
    set_tests_properties(growth_of_${kind} PROPERTIES TIMEOUT 1200)
  endforeach()
  set_tests_properties(growth_of_pictures PROPERTIES LABELS thorough)
endif()
