# SPDX-License-Identifier: MIT
# One function for each sort of target, so that every library, tool and test is
# built with the same settings; each setting stands beside its reason.

# Settings of every target that is compiled here.
add_library(kpgeometry_settings INTERFACE)

target_compile_options(kpgeometry_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  # Results are a contract to the bit: a fused product and sum differs in the last one.
  -ffp-contract=off)
if(KPGEOMETRY_WERROR)
  target_compile_options(kpgeometry_settings INTERFACE -Werror)
endif()

target_compile_definitions(kpgeometry_settings INTERFACE
  QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_URL_CAST_FROM_STRING
  # Text becomes a QString only where the code says in which encoding.
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY)

if(KPGEOMETRY_SANITIZERS)
  target_compile_options(kpgeometry_settings INTERFACE
    -fsanitize=${KPGEOMETRY_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(kpgeometry_settings INTERFACE -fsanitize=${KPGEOMETRY_SANITIZERS})
  if(KPGEOMETRY_SANITIZERS MATCHES implicit-conversion)
    target_compile_options(kpgeometry_settings INTERFACE
      -fsanitize-ignorelist=${CMAKE_CURRENT_LIST_DIR}/conversions.ignore)
  endif()
else()
  # The sanitizer runtimes are resolved at load time, so only a plain build can insist.
  target_link_options(kpgeometry_settings INTERFACE -Wl,--no-undefined)
  # What is installed does not tell where it was built. Only a debugger wants to know.
  target_compile_options(kpgeometry_settings INTERFACE
    $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}/=>
    $<$<NOT:$<CONFIG:Debug>>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>)
endif()
target_link_options(kpgeometry_settings INTERFACE -Wl,--fatal-warnings)
if(CMAKE_UNITY_BUILD)
  # What one source names for itself may be a name within a function of the next.
  target_compile_options(kpgeometry_settings INTERFACE -Wno-shadow)
endif()
if(KPGEOMETRY_FUZZERS AND NOT KPGEOMETRY_REPLAY)
  # The fuzzer steers by the branches that the libraries take.
  target_compile_options(kpgeometry_settings INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(KPGEOMETRY_COVERAGE)
  # Threads and processes that run at once add to the same counts; nobody asks for those of Qt.
  # Tests of tools are not counted: they would only become slower.
  target_compile_options(kpgeometry_settings INTERFACE
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:KPGEOMETRY_IS_UNMEASURED>>>:--coverage>
    -fprofile-update=atomic "-fprofile-exclude-files=^/usr/(include|lib)/")
  target_link_options(kpgeometry_settings INTERFACE --coverage)
  # The library throws nothing: without exceptions each branch is one that the source shows.
  set(KPGEOMETRY_LIBRARY_OPTIONS -fno-exceptions)
endif()

include(${CMAKE_CURRENT_LIST_DIR}/Hardening.cmake)

# Said by every public header, first of all, since each begins with an export header. Those that
# pass no Qt types compile without Qt.
set(KPGEOMETRY_QT_CHECK [[
#ifdef __has_include
#  if __has_include(<QtGlobal>)
#    include <QtGlobal>
#  endif
#endif
#if defined(QT_VERSION) && QT_VERSION >= 0x060000
#  error "kpgeometry needs Qt 5.15: its interface passes QMatrix, which Qt 6 no longer has"
#endif
]])

# kpgeometry_add_library(<target> OUTPUT_NAME <name> SOURCES ... PUBLIC_HEADERS ... PUBLIC ... PRIVATE ...)
#
# A shared library lib<name>.so.1 with hidden visibility, the export macro
# <TARGET>_EXPORT in <target>_export.h, and its headers installed to include/kpgeometry.
function(kpgeometry_add_library target)
  cmake_parse_arguments(arg "" "OUTPUT_NAME" "SOURCES;PUBLIC_HEADERS;PUBLIC;PRIVATE" ${ARGN})
  add_library(${target} SHARED ${arg_SOURCES} ${arg_PUBLIC_HEADERS})
  add_library(KpGeometry::${arg_OUTPUT_NAME} ALIAS ${target})

  include(GenerateExportHeader)
  set(include_dir ${PROJECT_BINARY_DIR}/include/${target})
  generate_export_header(${target} EXPORT_FILE_NAME ${include_dir}/${target}_export.h
    CUSTOM_CONTENT_FROM_VARIABLE KPGEOMETRY_QT_CHECK)
  # Public headers lie flat, as they will be installed, and away from the private ones beside
  # which they are kept.
  foreach(header IN LISTS arg_PUBLIC_HEADERS)
    cmake_path(GET header FILENAME name)
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${include_dir}/${name}
      COPY_ON_ERROR SYMBOLIC)
  endforeach()

  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${arg_OUTPUT_NAME}
    EXPORT_NAME ${arg_OUTPUT_NAME}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${include_dir}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kpgeometry>)
  target_compile_features(${target} INTERFACE cxx_std_11)
  # Who calls its own functions gets its own: only a program that interposes them could tell.
  target_compile_options(${target} PRIVATE -fno-semantic-interposition ${KPGEOMETRY_LIBRARY_OPTIONS})
  target_link_libraries(${target}
    PUBLIC ${arg_PUBLIC}
    PRIVATE $<BUILD_INTERFACE:kpgeometry_settings> ${arg_PRIVATE})

  install(TARGETS ${target} EXPORT KpGeometryTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
  install(FILES ${arg_PUBLIC_HEADERS} ${include_dir}/${target}_export.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kpgeometry)
endfunction()

set(KPGEOMETRY_SANITIZER_ENVIRONMENT
  "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks.supp:print_suppressions=0;TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/threads.supp;UBSAN_OPTIONS=print_stacktrace=1")

# There are many programs of tests, each with much in it that is linked statically.
find_program(KPGEOMETRY_LLD ld.lld)
function(kpgeometry_link_fast target)
  if(KPGEOMETRY_LLD)
    target_link_options(${target} PRIVATE -fuse-ld=lld)
  endif()
endfunction()

# kpgeometry_compile_as_test(<target> [UNOPTIMIZED] [WIDGETS])
function(kpgeometry_compile_as_test target)
  cmake_parse_arguments(arg "UNOPTIMIZED;WIDGETS" "" "" ${ARGN})
  target_link_libraries(${target} PRIVATE kpgeometry_settings Qt5::Test Qt5::Gui Qt5::Xml)
  target_compile_options(${target} PRIVATE
    # Tests may write their literals plainly.
    -UQT_NO_CAST_FROM_ASCII -UQT_NO_CAST_TO_ASCII -UQT_NO_CAST_FROM_BYTEARRAY
    # What <QtTest> includes, and which application QTEST_MAIN makes, is the same for all of a sort.
    -UQT_NETWORK_LIB)
  if(arg_WIDGETS)
    target_link_libraries(${target} PRIVATE Qt5::Widgets)
  else()
    target_compile_options(${target} PRIVATE -UQT_WIDGETS_LIB)
  endif()
  if(arg_UNOPTIMIZED)
    target_compile_options(${target} PRIVATE -O0 -U_FORTIFY_SOURCE)
    set_target_properties(${target} PROPERTIES KPGEOMETRY_IS_UNMEASURED ON)
  else()
    # The tests of the library: what it has inline in its headers is counted in them.
    target_compile_options(${target} PRIVATE ${KPGEOMETRY_LIBRARY_OPTIONS}
      # More only takes longer to compile.
      $<$<CONFIG:Release>:-O1>)
  endif()
endfunction()

# kpgeometry_add_test_headers(<target> [UNOPTIMIZED] [WIDGETS]): what tests reuse that are compiled
# likewise.
function(kpgeometry_add_test_headers target)
  add_library(${target} OBJECT ${PROJECT_SOURCE_DIR}/cmake/empty.cpp)
  kpgeometry_compile_as_test(${target} ${ARGN})
  set(headers <QtTest> <QDomDocument> <QImage> <QPainter> <QPainterPath>)
  if(WIDGETS IN_LIST ARGN)
    list(APPEND headers <QtWidgets>)
  endif()
  target_precompile_headers(${target} PRIVATE ${headers}
    <algorithm> <array> <cmath> <functional> <limits> <memory> <optional> <vector>)
endfunction()

# kpgeometry_add_moc(<target> <source> <name>)
#
# What moc makes of a source or a header, to be included by <name>. AUTOMOC would look through each
# target, by a process of its own, before anything of it is compiled.
function(kpgeometry_add_moc target source name)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/moc)
  file(MAKE_DIRECTORY ${folder})
  add_custom_command(OUTPUT ${folder}/${name}
    COMMAND Qt5::moc -o ${folder}/${name} ${CMAKE_CURRENT_SOURCE_DIR}/${source}
    DEPENDS ${source}
    COMMENT "Running moc on ${source}"
    VERBATIM)
  target_sources(${target} PRIVATE ${folder}/${name})
  set_source_files_properties(${folder}/${name} PROPERTIES HEADER_FILE_ONLY ON)
  target_include_directories(${target} PRIVATE ${folder})
endfunction()

# kpgeometry_add_test(<name> [UNOPTIMIZED] [WIDGETS] [SOURCES ...] [LIBRARIES ...] [DEFINITIONS ...]
#   [TIMEOUT seconds])
#
# A Qt Test program built from <name>.cpp. It runs on the offscreen platform, so it
# needs no display. UNOPTIMIZED compiles only the program itself so, and is for those whose
# time goes by in libraries and in other processes: they are compiled in half the time. So are all
# tests of WIDGETS.
function(kpgeometry_add_test name)
  cmake_parse_arguments(arg "UNOPTIMIZED;WIDGETS" "TIMEOUT" "SOURCES;LIBRARIES;DEFINITIONS" ${ARGN})
  add_executable(${name} ${name}.cpp ${arg_SOURCES})
  set_target_properties(${name} PROPERTIES UNITY_BUILD OFF)
  kpgeometry_add_moc(${name} ${name}.cpp ${name}.moc)
  if(arg_WIDGETS)
    kpgeometry_compile_as_test(${name} UNOPTIMIZED WIDGETS)
    set(headers kpgeometry_widget_test_headers)
  elseif(arg_UNOPTIMIZED)
    kpgeometry_compile_as_test(${name} UNOPTIMIZED)
    set(headers kpgeometry_unoptimized_test_headers)
  else()
    kpgeometry_compile_as_test(${name})
    set(headers kpgeometry_test_headers)
  endif()
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES})
  kpgeometry_link_fast(${name})
  target_compile_definitions(${name} PRIVATE ${arg_DEFINITIONS}
    KPGEOMETRY_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
  if(KPGEOMETRY_PRECOMPILED_HEADERS)
    target_precompile_headers(${name} REUSE_FROM ${headers})
  endif()
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  set(environment "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;${KPGEOMETRY_SANITIZER_ENVIRONMENT}")
  if(KPGEOMETRY_COVERAGE)
    # What sweeps a whole space is counted step by step. Qt would end a function after five minutes.
    math(EXPR arg_TIMEOUT "4 * ${arg_TIMEOUT}")
    list(APPEND environment QTEST_FUNCTION_TIMEOUT=${arg_TIMEOUT}000)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    TIMEOUT ${arg_TIMEOUT}
    ENVIRONMENT "${environment}")
endfunction()
