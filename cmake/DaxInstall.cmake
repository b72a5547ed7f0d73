# Installation: headers of the exported interface and of the components it names, the CMake package and pkg-config.
include(CMakePackageConfigHelpers)

install(DIRECTORY include/daxlib DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(DIRECTORY contracts/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")

configure_file(share/GeneralFiles.sys ${CMAKE_BINARY_DIR}/${DAX_DATA_DIR}/GeneralFiles.sys COPYONLY)
install(FILES share/GeneralFiles.sys DESTINATION ${DAX_DATA_DIR})

set(DAX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/daxlib)
install(EXPORT daxlibTargets NAMESPACE daxlib:: DESTINATION ${DAX_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/daxlibConfigVersion.cmake COMPATIBILITY SameMajorVersion)
configure_package_config_file(cmake/daxlibConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/daxlibConfig.cmake
                              INSTALL_DESTINATION ${DAX_CMAKE_DIR})
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/daxlibConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/daxlibConfigVersion.cmake
        DESTINATION ${DAX_CMAKE_DIR})

# Relative to itself, so that it holds wherever the installation is put.
file(RELATIVE_PATH DAX_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/daxlib.pc.in ${CMAKE_CURRENT_BINARY_DIR}/daxlib.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/daxlib.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
