# SPDX-License-Identifier: MIT
# The import of pictures and fonts, and the library with what others have drawn.
find_package(Qt5 5.15 REQUIRED COMPONENTS Svg)

kpgeometry_add_test(tst_drawingmlimport UNOPTIMIZED LIBRARIES kpgeomcore kpgeometry_private)
# With KPGEOMETRY_PRESETS in the environment also what scripts/presets fetches.
kpgeometry_add_test(tst_presetfit UNOPTIMIZED LIBRARIES kpgeomcore kpgeometry_private)
foreach(name IN ITEMS tst_pathrecorder tst_svgrewriter tst_svgviewport tst_uniquenames)
  kpgeometry_add_test(${name} UNOPTIMIZED LIBRARIES kpgeomcore)
endforeach()
find_package(ZLIB REQUIRED)
kpgeometry_add_test(tst_outlineimport UNOPTIMIZED LIBRARIES kpgeomcore kpgeomprocess ZLIB::ZLIB)
kpgeometry_add_test(tst_fillorientation LIBRARIES kpgeomcore TIMEOUT 900)
# Every glyph and every icon: minutes under the sanitizers and in a debug build.
kpgeometry_add_test(tst_realinput
  LIBRARIES kpgeomcore kpgeomprocess
  TIMEOUT 900)
