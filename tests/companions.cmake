# SPDX-License-Identifier: MIT
# The tests of the companion libraries as they stand in companions/. Another build of them
# is tested where it comes from; what the library needs of it the tests of outlines see.
if(KPGEOMETRY_COMPANIONS)
  message(STATUS "Companion libraries from ${KPGEOMETRY_COMPANIONS}: their tests are left out")
else()
  kpgeometry_add_test(tst_kppath ${quick} LIBRARIES KpGeometry::kpgraphics KpGeometry::kpgeometry)
  kpgeometry_add_test(tst_xmlstreamwriter ${quick} LIBRARIES KpGeometry::KPBX)
  kpgeometry_add_test(tst_quarkmanager ${quick} LIBRARIES KpGeometry::KPBX)
  kpgeometry_add_test(tst_kpfilepathmanager ${quick}
    SOURCES data/resource/document.qrc
    LIBRARIES KpGeometry::KPBX)
  set_target_properties(tst_kpfilepathmanager PROPERTIES AUTORCC ON)
  include(othercompanions.cmake)
endif()
kpgeometry_add_test(tst_boundedxml ${quick} LIBRARIES kpboundedxml)
kpgeometry_add_test(tst_markupbounds ${quick} LIBRARIES kpboundedxml)
