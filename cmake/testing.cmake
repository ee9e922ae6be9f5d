# add_suite(NAME SOURCES ... USES ... [LABELS ...] [SERIAL] [PREFIX p]): one GoogleTest program. The tests of a
# serial one run while no other test does; those of a suite that several programs run are told apart by a prefix.
# GoogleTest is built from Debian's sources, so that the native and the Windows tests use the same one.
if(NOT TARGET gtest)
  set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
endif()
include(GoogleTest)

function(add_suite name)
  cmake_parse_arguments(S "SERIAL" "PREFIX;TIMEOUT" "SOURCES;USES;LABELS" ${ARGN})
  if(NOT S_TIMEOUT)
    set(S_TIMEOUT 120)
  endif()
  add_executable(${name} ${S_SOURCES})
  target_link_libraries(${name} PRIVATE ${S_USES} gmock gtest gtest_main zimbrat_warnings)
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 240 TEST_PREFIX "${S_PREFIX}"
                       PROPERTIES TIMEOUT ${S_TIMEOUT} RUN_SERIAL ${S_SERIAL} LABELS "${S_LABELS}")
endfunction()
