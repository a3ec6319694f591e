# Fuzz targets. Each file defines LLVMFuzzerTestOneInput. With VORTIME_FUZZ they are libFuzzer programs; in every test
# build each is also a plain program that replays the files of its corpus, run as a test.

add_custom_target(vortime_fuzzers)

# vortime_add_fuzzer(<name> <file>... [LIBRARIES <target>...]): corpus in fuzz/corpus/<name>. Without libraries it is made of
# the time library's objects.
function(vortime_add_fuzzer name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "LIBRARIES")
  set(_target fuzz_${name})
  set(_corpus "${PROJECT_SOURCE_DIR}/fuzz/corpus/${name}")
  add_executable(${_target} ${ARG_UNPARSED_ARGUMENTS})
  target_include_directories(${_target} PRIVATE "${PROJECT_SOURCE_DIR}/tests" "${PROJECT_SOURCE_DIR}/fuzz")
  if(NOT ARG_LIBRARIES)
    set(ARG_LIBRARIES vortime_objects vortime_test_common)
  endif()
  target_link_libraries(${_target} PRIVATE vortime_warnings ${ARG_LIBRARIES})
  add_dependencies(vortime_fuzzers ${_target})
  if(VORTIME_FUZZ)
    target_link_options(${_target} PRIVATE -fsanitize=fuzzer)
    return()
  endif()
  target_sources(${_target} PRIVATE "${PROJECT_SOURCE_DIR}/fuzz/KTX_TIM_FuzzReplay.cpp")
  vortime_add_run(${_target} ${_target} ARGS "${_corpus}")
endfunction()
