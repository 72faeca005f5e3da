# What every target of this project shares: language level, warnings, sanitizers, and the two shapes that code comes in
# (an object library for each folder, a test program for each test folder).

option(ORVEL_WARNINGS_AS_ERRORS "Treat warnings as errors" ${PROJECT_IS_TOP_LEVEL})
set(ORVEL_SANITIZERS "" CACHE STRING "Comma-separated sanitizers for -fsanitize=, empty for none")

find_program(ORVEL_CCACHE ccache)
if(ORVEL_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${ORVEL_CCACHE}")
endif()

# Private build requirements of our own code, never passed on to users of the installed libraries.
add_library(orvel_build_flags INTERFACE)
target_compile_features(orvel_build_flags INTERFACE cxx_std_20)
# Contraction into fused multiply-add would make numbers differ from machine to machine.
target_compile_options(orvel_build_flags INTERFACE
    -ffp-contract=off
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Wcast-qual -Wformat=2
    -Woverloaded-virtual -Wundef
    $<$<BOOL:${ORVEL_WARNINGS_AS_ERRORS}>:-Werror>)
if(ORVEL_SANITIZERS)
    # GCC 12 reports std::regex and std::function as maybe uninitialised once they are instrumented.
    target_compile_options(orvel_build_flags INTERFACE
        -fsanitize=${ORVEL_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer -Wno-maybe-uninitialized)
    target_compile_definitions(orvel_build_flags INTERFACE _GLIBCXX_ASSERTIONS)
    target_link_options(orvel_build_flags INTERFACE -fsanitize=${ORVEL_SANITIZERS})
endif()

# orvel_add_objects(<name> SOURCES ... [PUBLIC ...] [PRIVATE ...])
#
# One folder of the system as an object library. Only explicitly exported symbols are visible once the objects stand in
# a shared library. PUBLIC and PRIVATE name what the folder's headers and its sources need.
function(orvel_add_objects name)
    cmake_parse_arguments(ARG "" "" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} OBJECT ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES
        POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE orvel_build_flags ${ARG_PRIVATE})
endfunction()

# orvel_add_library(<name> OBJECTS ... HEADERS ... [PUBLIC ...] [PRIVATE ...])
#
# An installed shared library, Orvel::<name>, made of the objects of some folders. HEADERS are installed with it: those
# that declare what it exports, and what they include. PUBLIC names the shared libraries whose classes appear in its
# headers, PRIVATE what its objects need besides.
function(orvel_add_library name)
    cmake_parse_arguments(ARG "" "" "OBJECTS;HEADERS;PUBLIC;PRIVATE" ${ARGN})
    add_library(${name} SHARED)
    add_library(Orvel::${name} ALIAS ${name})
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_OBJECTS} orvel_build_flags ${ARG_PRIVATE})
    target_compile_features(${name} INTERFACE cxx_std_20)
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${ARG_HEADERS})
    if(UNIX AND NOT APPLE)
        # Templates of the standard library that are instantiated with exported classes are visible by themselves.
        set(exports "${PROJECT_SOURCE_DIR}/cmake/exported-names.map")
        target_link_options(${name} PRIVATE "LINKER:--version-script=${exports}")
        set_property(TARGET ${name} PROPERTY LINK_DEPENDS "${exports}")
    endif()
    # Before version 1 the binary interface may change with every minor version.
    set_target_properties(${name} PROPERTIES
        LINKER_LANGUAGE CXX
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
        INSTALL_RPATH "$ORIGIN")
endfunction()

# orvel_add_test(<name> SOURCES ... LINK ...)
#
# A test program, one ctest entry for each test case: process-wide state starts afresh in each. LINK names the object
# libraries whose code the program contains, and whatever else it needs.
function(orvel_add_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE orvel_build_flags ${ARG_LINK} GTest::gmock GTest::gtest_main)
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/tests")
    target_compile_definitions(${name} PRIVATE ORVEL_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
    target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h>)
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()
