# What `cmake --install` puts where. Components: "libraries" is what programs need that use the library, "development"
# what building them needs, "program" is orvelprc with its documentation.

include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/OrvelPRCWriter")
set(document_dir "${CMAKE_INSTALL_DATAROOTDIR}/doc/orvelprcwriter")
# Debian keeps what packages bring in vendor-completions.
set(ORVEL_INSTALL_ZSHDIR "${CMAKE_INSTALL_DATAROOTDIR}/zsh/site-functions" CACHE STRING "Completion scripts for zsh")

install(TARGETS OrvelCore PRCFile OrvelAnimation OrvelPRCWriter EXPORT OrvelPRCWriterTargets
    RUNTIME COMPONENT libraries
    LIBRARY COMPONENT libraries NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development
    FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/orvelprcwriter" COMPONENT development)

# The headers include nothing but each other and the standard library: users need no package besides.
install(EXPORT OrvelPRCWriterTargets NAMESPACE Orvel:: DESTINATION "${package_dir}" COMPONENT development)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/OrvelPRCWriterConfig.cmake.in" OrvelPRCWriterConfig.cmake
    INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file(OrvelPRCWriterConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES
    "${CMAKE_CURRENT_BINARY_DIR}/OrvelPRCWriterConfig.cmake"
    "${CMAKE_CURRENT_BINARY_DIR}/OrvelPRCWriterConfigVersion.cmake"
    DESTINATION "${package_dir}" COMPONENT development)

# Relative to the file itself: `cmake --install --prefix` may choose another prefix than the one configured.
file(RELATIVE_PATH ORVEL_PREFIX_FROM_PKGCONFIG
    "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" ORVEL_PREFIX_FROM_PKGCONFIG "${ORVEL_PREFIX_FROM_PKGCONFIG}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/orvelprcwriter.pc.in" orvelprcwriter.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/orvelprcwriter.pc"
    DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
install(FILES "${PROJECT_SOURCE_DIR}/examples/CMakeLists.txt" "${PROJECT_SOURCE_DIR}/examples/host.cpp"
    "${PROJECT_SOURCE_DIR}/examples/assembly.cpp"
    DESTINATION "${document_dir}/examples" COMPONENT development)

if(ORVEL_BUILD_TOOL)
    file(RELATIVE_PATH libraries_from_program "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
    set_target_properties(orvelprc PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_program}")
    install(TARGETS orvelprc RUNTIME COMPONENT program)
    install(FILES "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md"
        DESTINATION "${document_dir}" COMPONENT program)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" DESTINATION "${document_dir}" COMPONENT program
        FILES_MATCHING PATTERN "*.md" PATTERN "*.png")
    # The guides tell how to use them.
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/batch" "${PROJECT_SOURCE_DIR}/examples/demo_scene"
        DESTINATION "${document_dir}/examples" COMPONENT program USE_SOURCE_PERMISSIONS)
    install(PROGRAMS "${PROJECT_SOURCE_DIR}/examples/explode-view" "${PROJECT_SOURCE_DIR}/examples/make-data-sheet"
        "${PROJECT_SOURCE_DIR}/examples/make-demo-scene"
        DESTINATION "${document_dir}/examples" COMPONENT program)
    set(share "${PROJECT_BINARY_DIR}/share")
    install(FILES "${share}/orvelprc.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT program)
    install(FILES "${share}/orvelprc"
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions" COMPONENT program)
    install(FILES "${share}/_orvelprc" DESTINATION "${ORVEL_INSTALL_ZSHDIR}" COMPONENT program)
    install(FILES "${share}/orvelprc.fish"
        DESTINATION "${CMAKE_INSTALL_DATAROOTDIR}/fish/vendor_completions.d" COMPONENT program)
endif()
