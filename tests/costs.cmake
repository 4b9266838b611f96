# SPDX-License-Identifier: MIT
# The long tests first, lest one of them runs alone at the end: seconds, about, of those that take
# more than ten. What others wait for comes before all.
set(costs
  package_install=1000
  tst_faults=300
  tst_realinput=170
  growth_of_pictures=110
  package_reproducible=110
  tst_kpgeom_files=90
  tst_kpshapes_odddocuments=90
  tst_recentfilesfile=75
  tst_fillorientation=65
  package_types=50
  tst_kpgeom_documents=50
  tst_kpgeom_render=50
  tst_kpshapes_session=50
  package_foreigncompanions=45
  growth_of_documents=40
  tst_gaussianblur=30
  package_headers_gcc=20
  package_headers_clang=20
  othercompanions_tst_recentfilesfile=20
  tst_draggedpage=20
  tst_kpgeom_batch=20
  tst_kpgeom_edges=20
  tst_kpshapes_fitdialog_at_1.5=15
  tst_kpshapes_fitdialog_at_2=15
  readers=15
  tst_colorutil=15
  tst_numbertext=15
  tst_schema=15)
foreach(cost IN LISTS costs)
  string(REGEX MATCH "^(.*)=(.*)$" cost "${cost}")
  if(TEST ${CMAKE_MATCH_1})
    set_tests_properties(${CMAKE_MATCH_1} PROPERTIES COST ${CMAKE_MATCH_2})
  endif()
endforeach()
