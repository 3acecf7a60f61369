# Installs the program, the library, its headers, and the files that find_package(morvel) needs.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS morveltesk RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS morvel EXPORT morvelTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/morvel DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT morvelTargets NAMESPACE morvel:: FILE morvelConfig.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/morvel)
write_basic_package_version_file(morvelConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/morvelConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/morvel)
