# Benchmarks beside their peers, against the built library as any application uses it.
find_package(benchmark REQUIRED)
add_custom_target(vortime_benchmarks)

# vortime_add_benchmark_program(<target> <file>...)
function(vortime_add_benchmark_program target)
  add_executable(${target} ${ARGN})
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/benchmarks")
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${target} PRIVATE KTX::TIM KTX::DBG vortime_warnings benchmark::benchmark)
  add_dependencies(vortime_benchmarks ${target})
endfunction()

# vortime_add_benchmark(<name> <file>... [LIBRARIES <peer>...]): the program <name>_benchmark.
# A benchmark is named BM_<work>/<who>; "vortime" is this library.
function(vortime_add_benchmark name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "LIBRARIES")
  vortime_add_benchmark_program(${name}_benchmark ${ARG_UNPARSED_ARGUMENTS})
  target_link_libraries(${name}_benchmark PRIVATE benchmark::benchmark_main ${ARG_LIBRARIES})
endfunction()
