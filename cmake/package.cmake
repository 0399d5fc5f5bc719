# The Debian package, made with `cpack -G DEB` in a build folder: the shared library with its
# SONAME, the public headers, the CMake package, the pkg-config file and the zeb tool, installed
# under /usr. The run-time dependencies come from dpkg-shlibdeps; the package announces its
# library to ldconfig.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zeb-common)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
  "General-purpose C++ utility library (strings, charsets, dates, log, threads) and its zeb tool")
set(CPACK_PACKAGE_DESCRIPTION
  "zeb_common is a C++17 utility library for desktop applications: owning 8-bit and UTF-16 \
strings, charset conversion, byte buffers, packed date-times, a levelled tagged log, threads and \
task threads, file helpers. This package holds the shared library, its headers and development \
files, and the zeb command-line tool.")
set(CPACK_PACKAGE_CONTACT "zeb_common developers <zeb-common@localhost>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
include(CPack)
