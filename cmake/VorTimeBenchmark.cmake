# Benchmarks beside their peers, against the built library as any application uses it.
find_package(benchmark REQUIRED)
add_custom_target(vortime_benchmarks)

# vortime_add_benchmark(<name> <file>... [LIBRARIES <peer>...]): the program <name>_benchmark.
# A benchmark is named BM_<work>/<who>; "vortime" is this library.
function(vortime_add_benchmark name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "LIBRARIES")
  set(_target ${name}_benchmark)
  add_executable(${_target} ${ARG_UNPARSED_ARGUMENTS})
  set_target_properties(${_target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/benchmarks")
  target_link_libraries(${_target} PRIVATE KTX::TIM KTX::DBG vortime_warnings benchmark::benchmark_main ${ARG_LIBRARIES})
  add_dependencies(vortime_benchmarks ${_target})
endfunction()
