# Installation: the library, its public headers, a CMake package (find_package(zeb_common CONFIG)
# gives zeb::zeb_common) and a pkg-config file.
include(CMakePackageConfigHelpers)

set(ZEB_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zeb_common)

install(TARGETS zeb_common EXPORT zeb_commonTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(DIRECTORY zeb/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zeb
  FILES_MATCHING PATTERN "*.h"
  PATTERN "internal" EXCLUDE
  PATTERN "platform" EXCLUDE
  PATTERN "testdata" EXCLUDE
  PATTERN "*_test.h" EXCLUDE)
install(FILES zeb/platform/wintypes.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zeb/platform)

install(EXPORT zeb_commonTargets NAMESPACE zeb:: DESTINATION ${ZEB_CMAKE_DIR})
configure_package_config_file(cmake/zeb_commonConfig.cmake.in
  ${PROJECT_BINARY_DIR}/zeb_commonConfig.cmake INSTALL_DESTINATION ${ZEB_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/zeb_commonConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/zeb_commonConfig.cmake
  ${PROJECT_BINARY_DIR}/zeb_commonConfigVersion.cmake DESTINATION ${ZEB_CMAKE_DIR})

configure_file(cmake/zeb_common.pc.in ${PROJECT_BINARY_DIR}/zeb_common.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zeb_common.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
