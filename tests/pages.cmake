# SPDX-License-Identifier: MIT
# What the guides say and show is so, or not: sanitizers, which have the tests of all that is behind
# it, would only say the same later.
if(NOT KPGEOMETRY_SANITIZERS AND NOT KPGEOMETRY_COVERAGE)
  kpgeometry_add_test(tst_formatpage ${quick}
    LIBRARIES KpGeometry::kpgeometry
    DEFINITIONS KPGEOMETRY_SOURCE="${PROJECT_SOURCE_DIR}")

  add_test(NAME pages_are_finished COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/docstest.py)

  add_test(NAME guides_show_what_is_printed
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/transcripts $<TARGET_FILE:kpgeom>)

  add_test(NAME tool_page_names_commands
    COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/toolpage $<TARGET_FILE:kpgeom>)

  add_executable(comparepictures comparepictures.cpp)
  target_link_libraries(comparepictures PRIVATE kpgeometry_settings Qt5::Gui)
  add_test(NAME pictures
    COMMAND ${PROJECT_SOURCE_DIR}/scripts/pictures --check ${PROJECT_BINARY_DIR}
      ${CMAKE_CURRENT_BINARY_DIR}/pictures $<TARGET_FILE:comparepictures>)
  set_tests_properties(pictures PROPERTIES ENVIRONMENT "LC_ALL=C.UTF-8")
endif()
