# What a consumer finds: find_package(KpGeometry 1 CONFIG) and pkg-config kpgeometry.
include(CMakePackageConfigHelpers)

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

configure_file(${CMAKE_CURRENT_LIST_DIR}/kpgeometry.pc.in
  ${PROJECT_BINARY_DIR}/kpgeometry.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kpgeometry.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
