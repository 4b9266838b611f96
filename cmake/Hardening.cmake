# SPDX-License-Identifier: MIT
# What makes a fault in memory end a program instead of serving who caused it. It changes no
# result. Sanitizers find the same and more, and replace the functions that would be checked.
option(KPGEOMETRY_HARDENING "Check the stack and buffers at run time, and protect what the loader binds" ON)
if(NOT KPGEOMETRY_HARDENING OR KPGEOMETRY_SANITIZERS OR KPGEOMETRY_FUZZERS)
  return()
endif()

include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)
include(CheckLinkerFlag)

# kpgeometry_harden_compilation(<flag>), kpgeometry_harden_link(<flag>): for every target, where the
# compiler, the linker and the processor have it.
function(kpgeometry_harden_compilation flag)
  string(MAKE_C_IDENTIFIER "KPGEOMETRY_HAS${flag}" known)
  set(CMAKE_REQUIRED_FLAGS -Werror) # what a compiler ignores it only warns of
  check_cxx_compiler_flag(${flag} ${known})
  if(${known})
    target_compile_options(kpgeometry_settings INTERFACE ${flag})
  endif()
endfunction()
function(kpgeometry_harden_link flag)
  string(MAKE_C_IDENTIFIER "KPGEOMETRY_HAS${flag}" known)
  set(CMAKE_REQUIRED_LINK_OPTIONS -Wl,--fatal-warnings) # what a linker ignores it only warns of
  check_linker_flag(CXX ${flag} ${known})
  if(${known})
    target_link_options(kpgeometry_settings INTERFACE ${flag})
  endif()
endfunction()

# An array on the stack that is written past its end, and a frame that jumps over the guard page.
kpgeometry_harden_compilation(-fstack-protector-strong)
kpgeometry_harden_compilation(-fstack-clash-protection)
# Jumps and returns to where none was meant: on x86, and on 64-bit Arm.
kpgeometry_harden_compilation(-fcf-protection)
kpgeometry_harden_compilation(-mbranch-protection=standard)
# Shadow stacks need this mark in the file. The linker leaves it out if the start files of the C
# library lack it, though they return as they are called. That of branches stays as the linker finds
# it: start files without it have functions that a checked branch cannot reach.
kpgeometry_harden_link(-Wl,-z,shstk)

# Tables of addresses are bound at load, and read-only from then on; no stack holds code.
kpgeometry_harden_link(-Wl,-z,relro)
kpgeometry_harden_link(-Wl,-z,now)
kpgeometry_harden_link(-Wl,-z,noexecstack)
# Programs, too, stand at another address each time.
target_link_options(kpgeometry_settings INTERFACE
  $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)

# Functions of the C library check the buffers whose size the compiler knows, from level 3 also those
# whose size it can compute. Only an optimising compiler does.
set(CMAKE_REQUIRED_FLAGS -O2)
set(CMAKE_REQUIRED_DEFINITIONS -D_FORTIFY_SOURCE=3)
check_cxx_source_compiles([[
  #include <features.h>
  #if __USE_FORTIFY_LEVEL < 3
  #  error "level 2 is all there is"
  #endif
  int main() {}
]] KPGEOMETRY_HAS_FORTIFY_SOURCE_3)
unset(CMAKE_REQUIRED_FLAGS)
unset(CMAKE_REQUIRED_DEFINITIONS)
if(KPGEOMETRY_HAS_FORTIFY_SOURCE_3)
  set(fortify_level 3)
else()
  set(fortify_level 2)
endif()
target_compile_definitions(kpgeometry_settings INTERFACE
  $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:_FORTIFY_SOURCE=${fortify_level}>)
