# SPDX-License-Identifier: MIT
# What all tools share, a class or a set of functions each.
foreach(name IN ITEMS
    tst_appearancexml
    tst_arccurves
    tst_colourtheme
    tst_contentkind
    tst_custgeom
    tst_diaimport
    tst_documentnormalizer
    tst_drawinginput
    tst_filecontent
    tst_followingappearance
    tst_geometrywalker
    tst_guideformula
    tst_htmlpage
    tst_losses
    tst_markup
    tst_odfimport
    tst_outlinediff
    tst_outlinefit
    tst_outlinereader
    tst_outlinerecord
    tst_overlaysheet
    tst_ownership
    tst_pathdata
    tst_pathdataparser
    tst_pathimport
    tst_repeatableinput
    tst_rulefit
    tst_sequencealignment
    tst_shapebox
    tst_shapes
    tst_shapeshadow
    tst_shortlines
    tst_slicing
    tst_spool
    tst_svgguard
    tst_text
    tst_unfinishedfile
    tst_zipmember)
  kpgeometry_add_test(${name} UNOPTIMIZED LIBRARIES kpgeomcore kpgeometry_private util)
endforeach()
foreach(name IN ITEMS tst_filenames tst_messagelog)
  kpgeometry_add_test(${name} UNOPTIMIZED LIBRARIES kpgeomprocess)
endforeach()
kpgeometry_add_test(tst_corethreads UNOPTIMIZED LIBRARIES kpgeomcore Threads::Threads)
foreach(name IN ITEMS outputname suggestion)
  kpgeometry_add_test(tst_${name} UNOPTIMIZED
    SOURCES ${PROJECT_SOURCE_DIR}/tools/kpgeom/${name}.cpp
    LIBRARIES kpgeomcore)
  target_include_directories(tst_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tools/kpgeom)
endforeach()
kpgeometry_add_test(tst_commandline UNOPTIMIZED LIBRARIES kpgeomcommands)
# The library as its object files, one a source, show it; the tool beside it for comparison.
if(NOT CMAKE_UNITY_BUILD)
  kpgeometry_add_test(tst_kpgeomcore UNOPTIMIZED
    DEFINITIONS
      KPGEOM_CORE_LIBRARY="$<TARGET_FILE:kpgeomcore>"
      KPGEOM_EXECUTABLE="$<TARGET_FILE:kpgeom>"
      KPGEOMETRY_NM="${CMAKE_NM}")
  add_dependencies(tst_kpgeomcore kpgeomcore kpgeom)
endif()
# In a browser, which no sanitizer looks into: the page is what is tested.
if(NOT KPGEOMETRY_SANITIZERS)
  find_package(Qt5 5.15 REQUIRED COMPONENTS Network)
  kpgeometry_add_test(tst_draggedpage UNOPTIMIZED LIBRARIES kpgeomcore Qt5::Network)
endif()
kpgeometry_add_test(tst_limits UNOPTIMIZED
  LIBRARIES kpgeomcore kpgeometry_private kpboundedxml KpGeometry::KPBX)
add_test(NAME limits COMMAND ${PROJECT_SOURCE_DIR}/scripts/limits)
