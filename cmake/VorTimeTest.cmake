# GoogleTest from the distribution's sources, for every target system, and the functions that add tests.
set(VORTIME_GTEST_SOURCE /usr/src/googletest CACHE PATH "GoogleTest source directory")
set(_discover ON)
if(CMAKE_CROSSCOMPILING)
  set(_discover OFF)
endif()
option(VORTIME_DISCOVER_TESTS "One ctest entry for each test instead of one for each program" ${_discover})

set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
add_subdirectory("${VORTIME_GTEST_SOURCE}" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
foreach(_target gtest gmock gmock_main)
  target_compile_options(${_target} PRIVATE -w)
endforeach()
include(GoogleTest)

# vortime_add_run(<test name> <target> [ARGS ...] [ENVIRONMENT VAR=VALUE...] [TIMEOUT seconds]):
# one more ctest entry that runs a program of this build as a whole.
function(vortime_add_run name target)
  cmake_parse_arguments(PARSE_ARGV 2 ARG "" "TIMEOUT" "ARGS;ENVIRONMENT")
  add_test(NAME ${name} COMMAND ${target} ${ARG_ARGS})
  set(_environment LC_ALL=C.UTF-8 ${ARG_ENVIRONMENT})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT "${_environment}")
  if(CMAKE_CROSSCOMPILING)
    set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED wine)
  endif()
endfunction()

# vortime_compile_as_test(<target>): compile options of the tests' own code.
function(vortime_compile_as_test target)
  if(VORTIME_SANITIZE MATCHES "undefined" AND NOT VORTIME_FUZZ)
    # Optimising the checks of GoogleTest's templates takes more than half the time of the build. The library stays optimised.
    target_compile_options(${target} PRIVATE -O0)
  endif()
endfunction()

# Discovered tests share one environment, so a program with its own is run as a whole.
function(_vortime_register_test name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT" "ENVIRONMENT")
  if(ARG_ENVIRONMENT OR NOT VORTIME_DISCOVER_TESTS)
    vortime_add_run(${name} ${name} ${ARGN})
    return()
  endif()
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 300)
  endif()
  set(_fixture)
  if(CMAKE_CROSSCOMPILING)
    set(_fixture FIXTURES_REQUIRED wine)
  endif()
  gtest_discover_tests(
    ${name}
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60
    TEST_PREFIX "${name}."
    PROPERTIES TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT LC_ALL=C.UTF-8 ${_fixture})
endfunction()

function(_vortime_add_test_program name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT" "ENVIRONMENT")
  add_executable(${name} ${ARG_UNPARSED_ARGUMENTS})
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  # Tests lock again what they hold; clang's analysis of lock annotations does not know recursive locks.
  set_property(TARGET ${name} PROPERTY VORTIME_TEST ON)
  vortime_compile_as_test(${name})
  target_link_libraries(${name} PRIVATE gmock_main vortime_warnings)
  set(_options)
  if(ARG_TIMEOUT)
    list(APPEND _options TIMEOUT ${ARG_TIMEOUT})
  endif()
  if(ARG_ENVIRONMENT)
    list(APPEND _options ENVIRONMENT ${ARG_ENVIRONMENT})
  endif()
  _vortime_register_test(${name} ${_options})
endfunction()

# vortime_add_unit_test(<name> <file>... [ENVIRONMENT VAR=VALUE...] [TIMEOUT seconds]):
# a test program made of the library's objects, with log lines captured.
function(vortime_add_unit_test name)
  _vortime_add_test_program(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE vortime_objects vortime_test_common)
endfunction()

# vortime_add_lock_order_test(<name> <file>... [ENVIRONMENT VAR=VALUE...] [TIMEOUT seconds]):
# a unit test whose Mutex tells LockOrderC of every lock taken.
function(vortime_add_lock_order_test name)
  _vortime_add_test_program(${name} ${ARGN})
  target_sources(${name} PRIVATE
                 "$<FILTER:$<TARGET_OBJECTS:vortime_objects>,EXCLUDE,/(KTX_TIM_Mutex[.]cpp|unity_[a-z_]*[.]cxx)[.]>")
  if(TARGET vortime_test_apart)
    target_sources(${name} PRIVATE $<TARGET_OBJECTS:vortime_test_apart>)
  endif()
  foreach(_property COMPILE_DEFINITIONS INCLUDE_DIRECTORIES)
    set_property(TARGET ${name} APPEND PROPERTY ${_property} $<TARGET_PROPERTY:vortime_objects,INTERFACE_${_property}>)
  endforeach()
  target_link_libraries(${name} PRIVATE vortime_test_common vortime_test_lock_order vortime::boost)
endfunction()

# vortime_add_library_test(<name> <file>... [ENVIRONMENT VAR=VALUE...] [TIMEOUT seconds]):
# a test program that uses the built libraries as any application does.
function(vortime_add_library_test name)
  _vortime_add_test_program(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE KTX::TIM KTX::DBG)
endfunction()
