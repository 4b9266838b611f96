# SPDX-License-Identifier: MIT
# The editor: its model without widgets, and its widgets on a screen of several densities.
# kpgeometry_add_window_test(<name> [LIBRARIES ...] [TIMEOUT seconds]): a test program with widgets,
# which runs once for each device pixel ratio; sanitized, where it is slow, at one of them.
function(kpgeometry_add_window_test name)
  cmake_parse_arguments(arg "" "TIMEOUT" "LIBRARIES" ${ARGN})
  kpgeometry_add_test(${name} WIDGETS LIBRARIES ${arg_LIBRARIES} TIMEOUT ${arg_TIMEOUT})
  if(KPGEOMETRY_SANITIZERS)
    return()
  endif()
  foreach(ratio IN ITEMS 1.5 2)
    add_test(NAME ${name}_at_${ratio} COMMAND ${name})
    get_test_property(${name} TIMEOUT timeout)
    get_test_property(${name} ENVIRONMENT environment)
    set_tests_properties(${name}_at_${ratio} PROPERTIES
      TIMEOUT ${timeout}
      ENVIRONMENT "${environment};QT_SCALE_FACTOR=${ratio}")
  endforeach()
endfunction()

kpgeometry_add_test(tst_kpshapes_commandtext UNOPTIMIZED
  LIBRARIES kpshapes_window
  DEFINITIONS KPGEOM_EXECUTABLE="$<TARGET_FILE:kpgeom>")
add_dependencies(tst_kpshapes_commandtext kpgeom)
kpgeometry_add_test(tst_kpshapes_exchange UNOPTIMIZED LIBRARIES kpshapes_exchange)
foreach(name IN ITEMS
    tst_kpshapes_document
    tst_kpshapes_handledrag
    tst_kpshapes_operations
    tst_kpshapes_rules
    tst_kpshapes_selection
    tst_kpshapes_viewsettings)
  kpgeometry_add_test(${name} UNOPTIMIZED LIBRARIES kpshapes_model)
endforeach()

foreach(panel IN ITEMS appearancepanel boxstrip fitdialog outlinelist pointpanel transformlist)
  kpgeometry_add_window_test(tst_kpshapes_${panel} LIBRARIES kpshapes_panels)
endforeach()
kpgeometry_add_test(tst_kpshapes_lengthtext UNOPTIMIZED LIBRARIES kpshapes_model)

# Documents of the editor as files.
foreach(name IN ITEMS
    tst_kpshapes_documentfile
    tst_kpshapes_loader
    tst_kpshapes_randomchanges
    tst_kpshapes_recovery
    tst_kpshapes_sourcedocument
    tst_kpshapes_unitrewriter)
  kpgeometry_add_test(${name} UNOPTIMIZED LIBRARIES kpshapes_files)
endforeach()
kpgeometry_add_test(tst_kpshapes_anyoperation UNOPTIMIZED LIBRARIES kpshapes_model)

foreach(part IN ITEMS
    canvas canvas_accessible canvas_box canvas_interrupted canvas_tools canvas_view)
  kpgeometry_add_window_test(tst_kpshapes_${part} LIBRARIES kpshapes_canvas)
endforeach()

# Whole windows.
foreach(name IN ITEMS
    tst_kpshapes_odddocuments
    tst_kpshapes_session
    tst_kpshapes_windowedges)
  kpgeometry_add_test(${name} WIDGETS LIBRARIES kpshapes_window TIMEOUT 900)
endforeach()
foreach(part IN ITEMS documents exchangewindow faultyfiles loading prompter statusline window windows)
  kpgeometry_add_window_test(tst_kpshapes_${part} LIBRARIES kpshapes_window)
endforeach()
target_compile_definitions(tst_kpshapes_exchangewindow PRIVATE
  KPGEOMETRY_EXAMPLES="${PROJECT_SOURCE_DIR}/examples")
# The program on a server of its own.
kpgeometry_add_test(tst_kpshapes_xserver UNOPTIMIZED
  DEFINITIONS KPSHAPES_EXECUTABLE="$<TARGET_FILE:kpshapes>")
add_dependencies(tst_kpshapes_xserver kpshapes)
kpgeometry_add_test(tst_kpshapes_program UNOPTIMIZED
  LIBRARIES kpgeomprocess
  DEFINITIONS
    KPSHAPES_EXECUTABLE="$<TARGET_FILE:kpshapes>"
    KPSHAPES_DATA="${PROJECT_SOURCE_DIR}/tools/kpshapes/data"
    KPSHAPES_VERSION="${PROJECT_VERSION}")
add_dependencies(tst_kpshapes_program kpshapes)
