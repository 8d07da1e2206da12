# How the tests are declared.

# GoogleTest from the system; when cross-compiling (or where it is not packaged) from the sources
# that Debian's googletest package installs, built once in the build tree.
if(NOT CMAKE_CROSSCOMPILING)
    find_package(GTest QUIET)
endif()
if(NOT TARGET GTest::gmock)
    set(TESSARO_GOOGLETEST_SOURCES /usr/src/googletest CACHE PATH "GoogleTest's sources")
    set(INSTALL_GTEST OFF)
    set(BUILD_SHARED_LIBS OFF)
    add_subdirectory(${TESSARO_GOOGLETEST_SOURCES} ${PROJECT_BINARY_DIR}/googletest
                     EXCLUDE_FROM_ALL SYSTEM)
endif()
include(GoogleTest)

# tessaro_test_program(<room> <source>...): the room's test program. Each test is an entry of ctest,
# except under an emulator, where starting takes longer than testing: there the program is one.
function(tessaro_test_program room)
    add_executable(${room}_tests ${ARGN})
    target_link_libraries(${room}_tests PRIVATE tessaro_test_support GTest::gtest_main)
    if(CMAKE_CROSSCOMPILING)
        add_test(NAME ${room} COMMAND ${room}_tests --gtest_brief=1)
    else()
        gtest_discover_tests(${room}_tests TEST_PREFIX ${room}. DISCOVERY_TIMEOUT 60
                             PROPERTIES TIMEOUT 300)
    endif()
endfunction()
