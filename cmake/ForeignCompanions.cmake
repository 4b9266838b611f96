# SPDX-License-Identifier: MIT
# Imports libKPBX and libkpgraphics from the prefix KPGEOMETRY_COMPANIONS under the names
# that companions/ would have exported. Used by the build and by the installed package.

function(kpgeometry_import_companion name header)
  find_library(KPGEOMETRY_${name}_LIBRARY ${name}
    PATHS ${KPGEOMETRY_COMPANIONS}
    PATH_SUFFIXES lib lib/${CMAKE_LIBRARY_ARCHITECTURE} ${CMAKE_INSTALL_LIBDIR}
    NO_DEFAULT_PATH REQUIRED)
  find_path(KPGEOMETRY_${name}_INCLUDE_DIR ${header}
    PATHS ${KPGEOMETRY_COMPANIONS} PATH_SUFFIXES include include/kpgeometry
    NO_DEFAULT_PATH REQUIRED)
  add_library(KpGeometry::${name} SHARED IMPORTED GLOBAL)
  set_target_properties(KpGeometry::${name} PROPERTIES
    IMPORTED_LOCATION ${KPGEOMETRY_${name}_LIBRARY}
    INTERFACE_INCLUDE_DIRECTORIES ${KPGEOMETRY_${name}_INCLUDE_DIR}
    INTERFACE_LINK_LIBRARIES "${ARGN}")
endfunction()

kpgeometry_import_companion(KPBX xmlstreamwriter.h Qt5::Core Qt5::Xml)
kpgeometry_import_companion(kpgraphics kppath.h Qt5::Core Qt5::Gui)
