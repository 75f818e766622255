# cmake --install: library, public headers, CMake package and pkg-config file.
include(CMakePackageConfigHelpers)
install(TARGETS lumivex EXPORT LumivexTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES include/lumivex/lumivex.h include/lumivex/blitters.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lumivex)
install(EXPORT LumivexTargets NAMESPACE Lumivex:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Lumivex)
configure_package_config_file(cmake/LumivexConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/LumivexConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Lumivex)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/LumivexConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/LumivexConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/LumivexConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Lumivex)
# Relocatable: the prefix is found from where the .pc file lies.
file(RELATIVE_PATH LUMIVEX_PC_PREFIX_RELATIVE ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/lumivex.pc.in ${CMAKE_CURRENT_BINARY_DIR}/lumivex.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/lumivex.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
