# SPDX-License-Identifier: MIT
# The layout, the vtables and the symbols that clients were built against, and the package
# that new clients are built against.
set(build_kind "")
if(NOT KPGEOMETRY_COMPANIONS)
  list(APPEND build_kind KPGEOMETRY_OWN_COMPANIONS)
endif()
if(KPGEOMETRY_SANITIZERS)
  list(APPEND build_kind KPGEOMETRY_SANITIZED)
endif()
if(KPGEOMETRY_COVERAGE)
  list(APPEND build_kind KPGEOMETRY_COVERAGE)
endif()
kpgeometry_add_test(tst_binaryinterface ${quick}
  LIBRARIES KpGeometry::kpgeometry ${CMAKE_DL_LIBS}
  DEFINITIONS
    KPGEOMETRY_LIBRARY="$<TARGET_FILE:kpgeometry>"
    KPGEOMETRY_KPBX_LIBRARY="$<TARGET_FILE:KpGeometry::KPBX>"
    KPGEOMETRY_KPGRAPHICS_LIBRARY="$<TARGET_FILE:KpGeometry::kpgraphics>"
    KPGEOMETRY_NM="${CMAKE_NM}"
    ${build_kind})

# The package as a stranger uses it. What is installed from a build with companion libraries from
# elsewhere is not for strangers.
if(KPGEOMETRY_COMPANIONS)
  message(STATUS "Foreign companion libraries: the package tests are left out")
  return()
endif()

find_program(KPGEOMETRY_PKG_CONFIG pkg-config)
find_program(KPGEOMETRY_GDB gdb)
find_program(KPGEOMETRY_GCC g++)
find_program(KPGEOMETRY_CLANG clang++)

set(package_work ${CMAKE_CURRENT_BINARY_DIR}/package)

# kpgeometry_add_package_test(<name> <script> [CXX compiler])
function(kpgeometry_add_package_test name script)
  cmake_parse_arguments(arg "" "CXX" "" ${ARGN})
  if(NOT arg_CXX)
    set(arg_CXX ${CMAKE_CXX_COMPILER})
  endif()
  add_test(NAME ${name} COMMAND ${CMAKE_COMMAND}
    -DSOURCE=${PROJECT_SOURCE_DIR}
    -DBUILD=${PROJECT_BINARY_DIR}
    -DWORK=${package_work}
    -DPREFIX=${package_work}/prefix
    -DCOMPANIONS_PREFIX=${other_companions}
    -DCONSUMER=${PROJECT_SOURCE_DIR}/tests/package/consumer
    -DLIBDIR=${CMAKE_INSTALL_LIBDIR}
    -DVERSION=${PROJECT_VERSION}
    -DGENERATOR=${CMAKE_GENERATOR}
    -DCXX=${arg_CXX}
    -DCXX_FLAGS=${CMAKE_CXX_FLAGS}
    -DHARDENING=${KPGEOMETRY_HARDENING}
    -DPRECOMPILED_HEADERS=${KPGEOMETRY_PRECOMPILED_HEADERS}
    -DPKG_CONFIG=$<$<BOOL:${KPGEOMETRY_PKG_CONFIG}>:${KPGEOMETRY_PKG_CONFIG}>
    -DGDB=$<$<BOOL:${KPGEOMETRY_GDB}>:${KPGEOMETRY_GDB}>
    -DNM=${CMAKE_NM}
    -DOBJDUMP=${CMAKE_OBJDUMP}
    -DREADELF=${CMAKE_READELF}
    -P ${PROJECT_SOURCE_DIR}/tests/package/${script}.cmake)
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()

kpgeometry_add_package_test(package_install install)
set_tests_properties(package_install PROPERTIES FIXTURES_SETUP installed_package)
kpgeometry_add_package_test(package_findpackage findpackage)
if(KPGEOMETRY_SANITIZERS)
  # Only what runs: the consumer, which is compiled likewise.
  set(flags -fsanitize=${KPGEOMETRY_SANITIZERS})
  set_tests_properties(package_install package_findpackage PROPERTIES
    ENVIRONMENT "CXXFLAGS=${flags};LDFLAGS=${flags};${KPGEOMETRY_SANITIZER_ENVIRONMENT}")
  set_tests_properties(package_findpackage PROPERTIES FIXTURES_REQUIRED installed_package)
  return()
endif()
kpgeometry_add_package_test(package_pkgconfig pkgconfig)
kpgeometry_add_package_test(package_foreigncompanions foreigncompanions)
# It builds the library once more; that it works with other companions, its own tests show each time.
set_tests_properties(package_foreigncompanions PROPERTIES LABELS thorough)
kpgeometry_add_package_test(package_wrongqt wrongqt)
kpgeometry_add_package_test(package_debian debian)
set(package_tests
  package_findpackage package_pkgconfig package_foreigncompanions package_wrongqt package_debian)
if(TARGET kpgeometry_types)
  kpgeometry_add_package_test(package_gdb gdb)
  set_tests_properties(package_gdb PROPERTIES
    SKIP_REGULAR_EXPRESSION "skipped: gdb may not trace programs here")
  list(APPEND package_tests package_gdb)
endif()
if(KPGEOMETRY_HARDENING)
  kpgeometry_add_package_test(package_hardening hardening)
  list(APPEND package_tests package_hardening)
endif()
if(CMAKE_BUILD_TYPE STREQUAL Release AND NOT KPGEOMETRY_COVERAGE)
  kpgeometry_add_package_test(package_reproducible reproducible)
  set_tests_properties(package_reproducible PROPERTIES LABELS thorough)
  list(APPEND package_tests package_reproducible)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # What abidw makes of the debug information of another compiler differs in the records.
  add_test(NAME package_types COMMAND ${CMAKE_COMMAND}
    -DSOURCE=${PROJECT_SOURCE_DIR}
    -DBUILD=${package_work}/types-build
    -DRECORDS=${PROJECT_SOURCE_DIR}/tests/data/binaryinterface
    -DGENERATOR=${CMAKE_GENERATOR}
    -DCXX=${CMAKE_CXX_COMPILER}
    -P ${PROJECT_SOURCE_DIR}/tests/package/types.cmake)
  set_tests_properties(package_types PROPERTIES TIMEOUT 1200)
endif()
foreach(compiler IN ITEMS GCC CLANG)
  if(KPGEOMETRY_${compiler})
    string(TOLOWER package_headers_${compiler} name)
    kpgeometry_add_package_test(${name} headers CXX ${KPGEOMETRY_${compiler}})
    list(APPEND package_tests ${name})
  else()
    message(STATUS "No ${compiler} found: public headers are not compiled with it")
  endif()
endforeach()
set_tests_properties(${package_tests} PROPERTIES FIXTURES_REQUIRED installed_package)
