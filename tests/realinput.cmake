# The import of pictures and fonts, and the library with what others have drawn.
find_package(Qt5 5.15 REQUIRED COMPONENTS Svg)

kpgeometry_add_test(tst_pathrecorder LIBRARIES kpgeomtool)
find_package(ZLIB REQUIRED)
kpgeometry_add_test(tst_outlineimport LIBRARIES kpgeomtool ZLIB::ZLIB)
kpgeometry_add_test(tst_fillorientation LIBRARIES kpgeomtool TIMEOUT 900)
# Every glyph and every icon: minutes under the sanitizers and in a debug build.
kpgeometry_add_test(tst_realinput LIBRARIES kpgeomtool TIMEOUT 900)
