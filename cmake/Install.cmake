# The libraries, the headers and the package that find_package(Tessaro) finds. The command has its
# own rule.
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Tessaro)

install(TARGETS tessaro tessaro_static EXPORT TessaroTargets COMPONENT library)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/tessaro DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        COMPONENT library FILES_MATCHING PATTERN "*.h")
install(EXPORT TessaroTargets NAMESPACE Tessaro:: DESTINATION ${package_folder} COMPONENT library)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TessaroConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/TessaroConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/TessaroConfig.cmake
                              INSTALL_DESTINATION ${package_folder})
install(FILES ${PROJECT_BINARY_DIR}/TessaroConfig.cmake
              ${PROJECT_BINARY_DIR}/TessaroConfigVersion.cmake
        DESTINATION ${package_folder} COMPONENT library)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/examples
        DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/README.md
              ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)
