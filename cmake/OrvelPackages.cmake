# Debian packages, one for each component of the installation; scripts/package makes them.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvelprcwriter)
# Each package has a first line of its own; this one would stand before it.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_VENDOR "OrvelPRCWriter developers")
set(CPACK_PACKAGE_CONTACT "OrvelPRCWriter developers" CACHE STRING "Maintainer of the packages: name <address>")
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/CompressManPages.cmake")
set(CPACK_COMPONENTS_ALL libraries development)
if(ORVEL_BUILD_TOOL)
    list(APPEND CPACK_COMPONENTS_ALL program)
endif()
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS libraries)
set(CPACK_COMPONENT_PROGRAM_DEPENDS libraries)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Where dpkg-shlibdeps finds the libraries that the program's own package does not hold.
foreach(library IN ITEMS OrvelCore OrvelAnimation PRCFile OrvelPRCWriter)
    get_target_property(folder ${library} BINARY_DIR)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${folder}")
endforeach()
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)

# A version that breaks users' binaries can stand beside this one.
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_NAME "liborvelprcwriter${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}")
set(CPACK_DEBIAN_LIBRARIES_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARIES_DESCRIPTION "writes 3D scenes as PRC (ISO 14739-1), shared libraries
PRC is the 3D format inside PDF. These libraries hold a scene in memory, with
a key-frame animation model, write it as PRC, and read PRC files.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liborvelprcwriter-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
# It holds links to libraries, no libraries.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "writes 3D scenes as PRC (ISO 14739-1), development files
PRC is the 3D format inside PDF. This package holds the headers of the C++20
libraries, what CMake and pkg-config need to find them, and an example.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME orvelprcwriter)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "turns 3D scenes into PRC (ISO 14739-1), and back
PRC is the 3D format inside PDF. The program orvelprc reads glTF, OBJ, FBX,
STL, PLY, Collada and some fifty more formats, writes PRC, reads it back, also
out of PDF files, and takes pictures.")

include(CPack)
