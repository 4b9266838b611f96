# SPDX-License-Identifier: MIT
# The programs that test the library run again, as they are, with another pair of companion
# libraries in the place of those that they were linked with. So both pairs have one binary
# interface, and the library counts on nothing that only one of them does.
add_subdirectory(othercompanions)
set(other_companions ${CMAKE_CURRENT_BINARY_DIR}/othercompanions/prefix)
set(other_libraries ${other_companions}/${CMAKE_INSTALL_LIBDIR})

foreach(name IN ITEMS
    tst_kpcolorio
    tst_kppathseg
    tst_kppathsegcurveto
    tst_kppathsegellipse
    tst_kppathseglineto
    tst_kppathseglist
    tst_kppathsegmoveto
    tst_kprecentfilemanager
    tst_geometryundo
    tst_geometryxml
    tst_largeoutlines
    tst_neighbours
    tst_unitutil
    tst_useatexit)
  add_test(NAME othercompanions_${name} COMMAND ${name})
  list(APPEND other_tests othercompanions_${name})
endforeach()
# All its functions but one: how large a file may be, each pair decides for itself.
add_test(NAME othercompanions_tst_recentfilesfile
  COMMAND bash -c "\"$0\" $(\"$0\" -functions | sed 's/()//; /^hostileFilesAreHarmless$/d')"
    $<TARGET_FILE:tst_recentfilesfile>)
list(APPEND other_tests othercompanions_tst_recentfilesfile)
set_tests_properties(${other_tests} PROPERTIES
  TIMEOUT 600
  ENVIRONMENT "LD_LIBRARY_PATH=${other_libraries};QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;${KPGEOMETRY_SANITIZER_ENVIRONMENT}")

# Without this they could all have run with the first pair.
add_test(NAME othercompanions_are_loaded COMMAND ldd $<TARGET_FILE:kpgeometry>)
set_tests_properties(othercompanions_are_loaded PROPERTIES
  ENVIRONMENT "LD_LIBRARY_PATH=${other_libraries}"
  PASS_REGULAR_EXPRESSION
    "libKPBX.so.1 => ${other_libraries}/.*libkpgraphics.so.1 => ${other_libraries}/")
