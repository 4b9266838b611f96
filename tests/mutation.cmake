# SPDX-License-Identifier: MIT
# The list of the mutants that no test catches (scripts/mutate) still speaks of the sources as they are.
find_program(KPGEOMETRY_PYTHON python3)
if(KPGEOMETRY_PYTHON)
  add_test(NAME mutation_survivors
    COMMAND ${KPGEOMETRY_PYTHON} ${PROJECT_SOURCE_DIR}/scripts/mutation/survivors.py)
else()
  message(STATUS "No python3 found: the list of mutants is not checked")
endif()
