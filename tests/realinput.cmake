# The import of pictures and fonts, and the library with what others have drawn.
find_package(Qt5 5.15 REQUIRED COMPONENTS Svg)

kpgeometry_add_test(tst_drawingmlimport UNOPTIMIZED LIBRARIES kpgeomcore kpgeometry_private)
# With KPGEOMETRY_PRESETS in the environment also what scripts/presets fetches.
kpgeometry_add_test(tst_presetfit UNOPTIMIZED LIBRARIES kpgeomcore kpgeometry_private)
foreach(name IN ITEMS tst_pathrecorder tst_svgrewriter tst_svgviewport tst_uniquenames)
  kpgeometry_add_test(${name} UNOPTIMIZED LIBRARIES kpgeomcore)
endforeach()
find_package(ZLIB REQUIRED)
# The log of messages is the tool's own.
kpgeometry_add_test(tst_outlineimport UNOPTIMIZED
  SOURCES ${PROJECT_SOURCE_DIR}/tools/kpgeom/messagelog.cpp
  LIBRARIES kpgeomcore ZLIB::ZLIB)
target_include_directories(tst_outlineimport PRIVATE ${PROJECT_SOURCE_DIR}/tools/kpgeom)
kpgeometry_add_test(tst_fillorientation LIBRARIES kpgeomcore TIMEOUT 900)
# Every glyph and every icon: minutes under the sanitizers and in a debug build.
kpgeometry_add_test(tst_realinput
  SOURCES ${PROJECT_SOURCE_DIR}/tools/kpgeom/messagelog.cpp
  LIBRARIES kpgeomcore
  TIMEOUT 900)
target_include_directories(tst_realinput PRIVATE ${PROJECT_SOURCE_DIR}/tools/kpgeom)
