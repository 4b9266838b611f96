# SPDX-License-Identifier: MIT
# The command-line tool as its users start it.
find_package(Qt5 5.15 REQUIRED COMPONENTS Gui Svg Xml)

set(parts "" _appearance _batch _bind _render _export _documents _check _files _colour _lengths _names _pictures _presets _digest _recent _fit _diff _edges _normalize _start _stencils _surroundings)
# The scripts for shells are the same in any build, and so is what is printed.
if(NOT KPGEOMETRY_SANITIZERS)
  list(APPEND parts _completion _json)
endif()
foreach(part IN LISTS parts)
  kpgeometry_add_test(tst_kpgeom${part} UNOPTIMIZED
    LIBRARIES Qt5::Gui Qt5::Svg Qt5::Xml KpGeometry::kpgeometry kpgeometry_private util
    DEFINITIONS
      KPGEOM_EXECUTABLE="$<TARGET_FILE:kpgeom>"
      KPGEOM_VERSION="${PROJECT_VERSION}"
      KPGEOMETRY_EXAMPLES="${PROJECT_SOURCE_DIR}/examples/documents"
      KPGEOM_TABLES="$<TARGET_FILE:kpgeomtables>"
      KPGEOM_MANUAL_FORM="${PROJECT_SOURCE_DIR}/tools/kpgeom/kpgeom.1.in"
      KPGEOM_MANUAL="$<TARGET_FILE_DIR:kpgeom>/kpgeom.1"
      KPGEOM_VALIDATOR="${CMAKE_CURRENT_SOURCE_DIR}/validatejson.py"
      KPGEOMETRY_SCHEMA="${PROJECT_SOURCE_DIR}/schema"
    TIMEOUT 600)
  add_dependencies(tst_kpgeom${part} kpgeom kpgeom_manual)
  # To look for leaks takes half of the time of a process, and these start thousands. Some of
  # them, which start each command, look all the same.
  if(KPGEOMETRY_SANITIZERS MATCHES address AND NOT part MATCHES "^(|_edges|_colour|_lengths|_recent)$")
    set_property(TEST tst_kpgeom${part} APPEND PROPERTY ENVIRONMENT ASAN_OPTIONS=detect_leaks=0)
  endif()
endforeach()
if(TARGET tst_kpgeom_completion)
  target_compile_definitions(tst_kpgeom_completion PRIVATE
    KPGEOM_COMPLETIONS="$<TARGET_FILE_DIR:kpgeom>"
    KPGEOM_COMPLETION_TESTS="${CMAKE_CURRENT_SOURCE_DIR}/completion")
  add_dependencies(tst_kpgeom_completion kpgeom_bash kpgeom_fish kpgeom_zsh)
endif()
if(KPGEOMETRY_COVERAGE)
  target_sources(kpgeom PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/writecounts.cpp)
  target_link_options(kpgeom PRIVATE -Wl,--wrap=_exit)
  set_source_files_properties(writecounts.cpp TARGET_DIRECTORY kpgeom
    PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
endif()
