# What `cmake --install` puts under the prefix:
#   lib/       libspindleui.so and libloomsim.so (versioned), the CMake package and
#              the pkg-config files
#   include/spindleui/   the public headers in their host/, core/ and refhost/ layout
#   bin/       loomsim
#   share/spindleui/samples/   the sample pages, settings and the tour
include(CMakePackageConfigHelpers)

set(SPINDLE_INCLUDE_ROOT ${CMAKE_INSTALL_INCLUDEDIR}/spindleui)
set(SPINDLE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/spindleui)

install(TARGETS spindleui loomsim EXPORT spindleuiTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS loomsim_main RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The library's interface: what the host declares and what the library exports.
install(DIRECTORY host/ DESTINATION ${SPINDLE_INCLUDE_ROOT}/host FILES_MATCHING PATTERN "*.h")
install(FILES core/spindleui.h core/export.h DESTINATION ${SPINDLE_INCLUDE_ROOT}/core)
install(DIRECTORY refhost/ DESTINATION ${SPINDLE_INCLUDE_ROOT}/refhost
  FILES_MATCHING PATTERN "*.h")
install(DIRECTORY samples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/spindleui/samples)

install(EXPORT spindleuiTargets NAMESPACE spindleui:: DESTINATION ${SPINDLE_CMAKE_DIR})
configure_package_config_file(cmake/spindleuiConfig.cmake.in
  ${CMAKE_BINARY_DIR}/spindleuiConfig.cmake INSTALL_DESTINATION ${SPINDLE_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/spindleuiConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/spindleuiConfig.cmake
  ${CMAKE_BINARY_DIR}/spindleuiConfigVersion.cmake DESTINATION ${SPINDLE_CMAKE_DIR})

# The .pc files name the prefix relative to themselves, so they hold wherever the
# prefix given to `cmake --install --prefix` is.
file(RELATIVE_PATH SPINDLE_PC_TO_PREFIX /p/${CMAKE_INSTALL_LIBDIR}/pkgconfig /p)
foreach(package spindleui loomsim)
  configure_file(cmake/${package}.pc.in ${CMAKE_BINARY_DIR}/${package}.pc @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/${package}.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()
