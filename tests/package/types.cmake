# SPDX-License-Identifier: MIT
# The types of the interface are those on record in RECORDS, one file for each library: results,
# parameters, fields and their places, virtual functions, numbers of enumerations. A mangled name
# tells of a function's parameters only, and of no type what is in it.
#
# Such types stand in a build with debug information, in the folder BUILD. With UPDATE, what is
# found there goes on record.
include(${CMAKE_CURRENT_LIST_DIR}/common.cmake)

find_program(ABIDW abidw)
find_program(ABIDIFF abidiff)
if(NOT ABIDW OR NOT ABIDIFF)
  message(FATAL_ERROR "abidw or abidiff was not found; Debian has them in the package abigail-tools")
endif()

# kp_dump_types(<library> <file>): what abidw tells of the built library, without any path to it.
function(kp_dump_types library file)
  kp_run("abidw on ${library}" COMMAND ${ABIDW} --exported-interfaces-only --drop-undefined-syms
    --drop-private-types --type-id-style hash --no-show-locs --no-corpus-path --no-comp-dir-path
    --no-elf-needed --headers-dir ${BUILD}/include/kpgeometry --headers-dir ${BUILD}/include/kpbx
    --headers-dir ${BUILD}/include/kpgraphics --out-file ${file} ${library})
  file(READ ${file} types)
  string(REGEX REPLACE "path='[^']*/(src|companions)/" "path='\\1/" types "${types}")
  file(WRITE ${file} "${types}")
endfunction()

# kp_compare_types(<variable> <recorded> <found>): what differs, nothing if nothing does.
function(kp_compare_types variable recorded found)
  execute_process(COMMAND ${ABIDIFF} --harmless
      --suppressions ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/standardlibrary.abignore ${recorded} ${found}
    RESULT_VARIABLE result OUTPUT_VARIABLE differences ERROR_VARIABLE differences)
  if(NOT result EQUAL 0 AND differences STREQUAL "")
    set(differences "abidiff stopped with ${result}")
  elseif(result EQUAL 0)
    set(differences "")
  endif()
  set(${variable} "${differences}" PARENT_SCOPE)
endfunction()

# kp_expect_seen(<recorded> <expression> <replacement> <what abidiff says>): a change is noticed.
function(kp_expect_seen recorded expression replacement saying)
  file(READ ${recorded} types)
  string(REGEX REPLACE "${expression}" "${replacement}" changed "${types}")
  if(changed STREQUAL types)
    message(FATAL_ERROR "nothing to change in ${recorded}: ${expression}")
  endif()
  file(WRITE ${BUILD}/changed.abi "${changed}")
  kp_compare_types(differences ${recorded} ${BUILD}/changed.abi)
  kp_expect_match("${differences}" "${saying}" "a change is seen")
endfunction()

kp_run("configuring with debug information" COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${BUILD}
  -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_BUILD_TYPE=Debug
  # Little but enough that functions of headers go inline, and one set of instructions: what is
  # compiled for several has no types of its own.
  "-DCMAKE_CXX_FLAGS_DEBUG=-g -O1 -DHWY_COMPILE_ONLY_STATIC" -DBUILD_TESTING=OFF)
kp_run("building with debug information" COMMAND ${CMAKE_COMMAND} --build ${BUILD}
  --target kpgeometry)

foreach(library IN ITEMS src/libkpgeometry companions/kpbx/libKPBX companions/kpgraphics/libkpgraphics)
  cmake_path(GET library FILENAME name)
  set(recorded ${RECORDS}/${name}.abi)
  if(UPDATE)
    kp_dump_types(${BUILD}/${library}.so ${recorded})
  else()
    kp_dump_types(${BUILD}/${library}.so ${BUILD}/${name}.abi)
    kp_compare_types(differences ${recorded} ${BUILD}/${name}.abi)
    if(differences)
      message(FATAL_ERROR "the interface of ${name} is not that on record; if that is meant: "
        "scripts/binaryinterface --update\n${differences}")
    endif()
  endif()
endforeach()

# That changes are seen is not taken for granted.
set(recorded ${RECORDS}/libkpgeometry.abi)
file(STRINGS ${recorded} int REGEX "<type-decl name='int' ")
string(REGEX REPLACE ".* id='([^']+)'.*" "\\1" int "${int}")
kp_expect_seen(${recorded}
  "(mangled-name='_ZN9KpPathSeg9isLastSegEv'[^>]*>[^>]*>[ \n]*<return type-id=')[^']+" "\\1${int}"
  "return type changed:[ \n]*type name changed from 'bool' to 'int'")
kp_expect_seen(${recorded} "80('>[ \n]*<var-decl name='noFill')" "88\\1"
  "'bool noFill' offset changed from 80 to 88")
kp_expect_seen(${recorded} "(<enumerator name='SegEllipse' value=')5" "\\16"
  "SegEllipse' from value '5' to '6'")
