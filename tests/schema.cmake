# SPDX-License-Identifier: MIT
# The schema of documents, by what xmllint says of them.
kpgeometry_add_test(tst_schema UNOPTIMIZED
  LIBRARIES kpgeomcore util
  DEFINITIONS
    KPGEOM_EXECUTABLE="$<TARGET_FILE:kpgeom>"
    KPGEOMETRY_SCHEMA="${PROJECT_SOURCE_DIR}/schema"
    KPGEOMETRY_EXAMPLES="${PROJECT_SOURCE_DIR}/examples"
  TIMEOUT 300)
add_dependencies(tst_schema kpgeom)
kpgeometry_add_test(tst_appearanceschema UNOPTIMIZED
  LIBRARIES kpgeomcore kpgeometry_private util
  DEFINITIONS
    KPGEOM_EXECUTABLE="$<TARGET_FILE:kpgeom>"
    KPGEOMETRY_SCHEMA="${PROJECT_SOURCE_DIR}/schema")
