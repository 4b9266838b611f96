# SPDX-License-Identifier: MIT
# The pictures of the guides are what the programs draw: built without sanitizers, which would only
# make the same pictures later.
if(NOT KPGEOMETRY_SANITIZERS AND NOT KPGEOMETRY_COVERAGE)
  add_executable(comparepictures comparepictures.cpp)
  target_link_libraries(comparepictures PRIVATE kpgeometry_settings Qt5::Gui)
  add_test(NAME pictures
    COMMAND ${PROJECT_SOURCE_DIR}/scripts/pictures --check ${PROJECT_BINARY_DIR}
      ${CMAKE_CURRENT_BINARY_DIR}/pictures $<TARGET_FILE:comparepictures>)
  set_tests_properties(pictures PROPERTIES ENVIRONMENT "LC_ALL=C.UTF-8")
endif()
