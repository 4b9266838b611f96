# SPDX-License-Identifier: MIT
# What a consumer finds: find_package(KpGeometry 1 CONFIG) and pkg-config kpgeometry.
include(CMakePackageConfigHelpers)

# Where replaced companion libraries stand; empty when the package brings its own.
set(companion_dirs "")
set(companion_include_dirs "")
if(KPGEOMETRY_COMPANIONS)
  foreach(name IN ITEMS KPBX kpgraphics)
    cmake_path(GET KPGEOMETRY_${name}_LIBRARY PARENT_PATH directory)
    list(APPEND companion_dirs ${directory})
    list(APPEND companion_include_dirs ${KPGEOMETRY_${name}_INCLUDE_DIR})
  endforeach()
  list(REMOVE_DUPLICATES companion_dirs)
  list(REMOVE_DUPLICATES companion_include_dirs)
endif()

# A client's run path does not reach the libraries that its libraries need: libkpgeometry
# itself says where the companion libraries are.
set_target_properties(kpgeometry PROPERTIES INSTALL_RPATH "$ORIGIN;${companion_dirs}")

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/KpGeometry)

configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/KpGeometryConfig.cmake.in
  ${PROJECT_BINARY_DIR}/KpGeometryConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/KpGeometryConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/KpGeometryConfig.cmake
  ${PROJECT_BINARY_DIR}/KpGeometryConfigVersion.cmake
  DESTINATION ${package_dir})
if(KPGEOMETRY_COMPANIONS)
  install(FILES ${CMAKE_CURRENT_LIST_DIR}/ForeignCompanions.cmake DESTINATION ${package_dir})
endif()
install(EXPORT KpGeometryTargets NAMESPACE KpGeometry:: DESTINATION ${package_dir})

# The .pc file finds the prefix from where it stands: cmake --install --prefix may put it
# elsewhere than was planned.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE package_prefix)
list(TRANSFORM companion_dirs PREPEND " -L" OUTPUT_VARIABLE package_companion_libs)
list(TRANSFORM companion_include_dirs PREPEND " -I" OUTPUT_VARIABLE package_companion_cflags)
list(JOIN package_companion_libs "" package_companion_libs)
list(JOIN package_companion_cflags "" package_companion_cflags)
configure_file(${CMAKE_CURRENT_LIST_DIR}/kpgeometry.pc.in
  ${PROJECT_BINARY_DIR}/kpgeometry.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kpgeometry.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

add_custom_target(uninstall
  COMMAND ${CMAKE_COMMAND} -P ${CMAKE_CURRENT_LIST_DIR}/Uninstall.cmake
  WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
  COMMENT "Removing what the last installation has put in place"
  VERBATIM)
