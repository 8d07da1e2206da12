# How the tests are declared.

# GoogleTest from the system; when cross-compiling (or where it is not packaged) from the sources
# that Debian's googletest package installs, built once in the build tree.
if(NOT CMAKE_CROSSCOMPILING)
    find_package(GTest QUIET)
endif()
if(NOT TARGET GTest::gmock)
    set(TESSARO_GOOGLETEST_SOURCES /usr/src/googletest CACHE PATH "GoogleTest's sources")
    block()
        set(INSTALL_GTEST OFF)
        set(BUILD_SHARED_LIBS OFF)
        add_subdirectory(${TESSARO_GOOGLETEST_SOURCES} ${PROJECT_BINARY_DIR}/googletest
                         EXCLUDE_FROM_ALL SYSTEM)
    endblock()
endif()
include(GoogleTest)

# Under Wine the tests of a run share one session.
set(TESSARO_TEST_SESSION)
if(CMAKE_CROSSCOMPILING)
    set(TESSARO_TEST_SESSION FIXTURES_REQUIRED wine)
    add_test(NAME wine.start COMMAND ${PROJECT_SOURCE_DIR}/cmake/wine-session start)
    add_test(NAME wine.stop COMMAND ${PROJECT_SOURCE_DIR}/cmake/wine-session stop)
    set_tests_properties(wine.start PROPERTIES FIXTURES_SETUP wine TIMEOUT 300)
    set_tests_properties(wine.stop PROPERTIES FIXTURES_CLEANUP wine)
endif()

# tessaro_test_program(<room> <source>...): the room's test program. Each test is an entry of ctest,
# except under an emulator, where starting takes longer than testing: there the program is one.
function(tessaro_test_program room)
    add_executable(${room}_tests ${ARGN})
    target_link_libraries(${room}_tests PRIVATE tessaro_test_support GTest::gtest_main)
    if(CMAKE_CROSSCOMPILING)
        add_test(NAME ${room} COMMAND ${room}_tests --gtest_brief=1)
        set_tests_properties(${room} PROPERTIES ${TESSARO_TEST_SESSION})
    else()
        gtest_discover_tests(${room}_tests TEST_PREFIX ${room}. DISCOVERY_TIMEOUT 60
                             PROPERTIES TIMEOUT 300)
    endif()
endfunction()
