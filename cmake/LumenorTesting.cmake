# GoogleTest suites for the Windows target. When cross-compiling on Linux, every test
# executable runs under Wine in the build's own prefix (tools/wine/run-in-prefix.sh).

set(LUMENOR_GTEST_SOURCE_DIR /usr/src/googletest CACHE PATH "GoogleTest sources to build for the target")

if(EXISTS ${LUMENOR_GTEST_SOURCE_DIR}/CMakeLists.txt)
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(gtest_disable_pthreads ON CACHE BOOL "" FORCE)
  set(gtest_force_shared_crt OFF CACHE BOOL "" FORCE)
  add_subdirectory(${LUMENOR_GTEST_SOURCE_DIR} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
else()
  find_package(GTest CONFIG REQUIRED)
endif()

file(GLOB LUMENOR_EXPECTED_FILES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/expected/*)

set(LUMENOR_TEST_FIXTURES "")
if(CMAKE_CROSSCOMPILING AND CMAKE_HOST_UNIX)
  set(LUMENOR_WINE_PREFIX ${CMAKE_BINARY_DIR}/wineprefix)
  set(LUMENOR_WINE_RUNNER ${PROJECT_SOURCE_DIR}/tools/wine/run-in-prefix.sh)
  add_test(NAME wine_prefix COMMAND ${LUMENOR_WINE_RUNNER} ${LUMENOR_WINE_PREFIX} --prepare)
  set_tests_properties(wine_prefix PROPERTIES FIXTURES_SETUP wine_prefix TIMEOUT 600)
  set(LUMENOR_TEST_FIXTURES wine_prefix)
endif()

# lumenor_add_test(NAME SOURCES ... LIBRARIES ... [NEEDS target ...])
# One test executable for one behaviour area, run as one CTest test.
function(lumenor_add_test name)
  cmake_parse_arguments(TEST "" "" "SOURCES;LIBRARIES;NEEDS" ${ARGN})
  add_executable(${name} ${TEST_SOURCES} ${PROJECT_SOURCE_DIR}/tests/support/TestMain.cpp
                         ${PROJECT_SOURCE_DIR}/tests/support/DestructiveTests.cpp)
  target_link_libraries(${name} PRIVATE ${TEST_LIBRARIES} lumenor_test_support GTest::gtest)
  target_sources(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests/test_resources.rc)
  set_property(SOURCE ${PROJECT_SOURCE_DIR}/tests/test_resources.rc PROPERTY OBJECT_DEPENDS ${LUMENOR_ARTWORK_FILES} ${LUMENOR_RESOURCE_PARTS} ${LUMENOR_EXPECTED_FILES})
  if(TEST_NEEDS)
    add_dependencies(${name} ${TEST_NEEDS})
  endif()
  if(LUMENOR_WINE_RUNNER)
    add_test(NAME ${name} COMMAND ${LUMENOR_WINE_RUNNER} ${LUMENOR_WINE_PREFIX} $<TARGET_FILE:${name}>)
  else()
    add_test(NAME ${name} COMMAND ${name})
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT 600 ENVIRONMENT LUMENOR_LINK_FIXTURES=1)
  if(LUMENOR_TEST_FIXTURES)
    set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED ${LUMENOR_TEST_FIXTURES})
  endif()
endfunction()

# lumenor_add_dpi_runs(NAME DPI...)
# Runs test program NAME once more for each screen resolution in DPI (dots per inch), as
# NAME_<DPI>dpi, each in a Wine prefix of its own set to it. The program finds the
# resolution it was meant to run at in LUMENOR_LOG_PIXELS. Only under Wine: on Windows
# the machine's own resolution is the one there is.
function(lumenor_add_dpi_runs name)
  if(NOT LUMENOR_WINE_RUNNER)
    return()
  endif()
  foreach(dpi IN LISTS ARGN)
    set(run ${name}_${dpi}dpi)
    add_test(NAME ${run} COMMAND ${LUMENOR_WINE_RUNNER} ${CMAKE_BINARY_DIR}/wineprefix-${dpi}dpi $<TARGET_FILE:${name}>)
    set_tests_properties(${run} PROPERTIES TIMEOUT 600 ENVIRONMENT LUMENOR_LOG_PIXELS=${dpi})
  endforeach()
endfunction()
