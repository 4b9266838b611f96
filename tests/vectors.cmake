# SPDX-License-Identifier: MIT
# The conformance vectors in vectors/: what writes them, and that they hold. The sanitizers have seen
# all of this in the tests of each class.
if(KPGEOMETRY_SANITIZERS OR KPGEOMETRY_COMPANIONS)
  return()
endif()

add_library(kpvectors_themes STATIC
  vectors/blur.cpp
  vectors/bound.cpp
  vectors/colour.cpp
  vectors/companions.cpp
  vectors/digest.cpp
  vectors/documentcolour.cpp
  vectors/files.cpp
  vectors/outlines.cpp
  vectors/outlinesamples.cpp
  vectors/outlinexml.cpp
  vectors/plane.cpp
  vectors/recentfiles.cpp
  vectors/segments.cpp
  vectors/theme.cpp
  vectors/units.cpp
  vectors/values.cpp)
kpgeometry_compile_as_test(kpvectors_themes UNOPTIMIZED)
target_include_directories(kpvectors_themes PUBLIC vectors)
target_link_libraries(kpvectors_themes PUBLIC KpGeometry::kpgeometry)
if(KPGEOMETRY_PRECOMPILED_HEADERS)
  target_precompile_headers(kpvectors_themes REUSE_FROM kpgeometry_unoptimized_test_headers)
endif()

add_executable(kpvectors vectors/main.cpp)
kpgeometry_compile_as_test(kpvectors UNOPTIMIZED)
target_link_libraries(kpvectors PRIVATE kpvectors_themes)
kpgeometry_link_fast(kpvectors)

kpgeometry_add_test(tst_vectors ${quick}
  LIBRARIES kpvectors_themes
  DEFINITIONS KPGEOMETRY_VECTORS="${PROJECT_SOURCE_DIR}/vectors")

# Computed anew by a program that knows the formulas alone, and which notices each changed value.
find_program(KPGEOMETRY_PYTHON python3)
if(KPGEOMETRY_PYTHON)
  set(check ${KPGEOMETRY_PYTHON} -B ${CMAKE_CURRENT_SOURCE_DIR}/vectors/recompute/check.py
    ${PROJECT_SOURCE_DIR}/vectors)
  add_test(NAME vectors_are_recomputed COMMAND ${check})
  add_test(NAME vectors_changes_are_noticed COMMAND ${check} --change)
else()
  message(STATUS "No python3 found: the vectors are not computed anew")
endif()
