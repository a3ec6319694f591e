# Installs the build tree into an empty folder, then configures, builds and runs a project that knows only
# this folder. Set: BUILD_DIR, WORK_DIR, CONSUMER_DIR, CONFIG, GENERATOR, COMPILER; for another system also
# TOOLCHAIN_FILE, BOOST_INCLUDE, RUN_WINE and WINE_PREFIX.
file(REMOVE_RECURSE "${WORK_DIR}")

function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --config "${CONFIG}" --prefix "${WORK_DIR}/prefix")

set(_options "-DCMAKE_BUILD_TYPE=${CONFIG}")
if(TOOLCHAIN_FILE)
  # A toolchain file for another system confines every search to that system's own folders.
  list(APPEND _options "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN_FILE}" "-DVorTime_DIR=${WORK_DIR}/prefix/lib/cmake/VorTime"
       "-DBoost_INCLUDE_DIR=${BOOST_INCLUDE}")
else()
  list(APPEND _options "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix")
endif()
run("${CMAKE_COMMAND}" -S "${CONSUMER_DIR}" -B "${WORK_DIR}/build" -G "${GENERATOR}" ${_options})
run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build")

set(_command "${WORK_DIR}/build/consumer")
if(RUN_WINE)
  file(COPY "${_command}.exe" DESTINATION "${WORK_DIR}/prefix/bin")
  set(_command "${RUN_WINE}" "${WINE_PREFIX}" "${WORK_DIR}/prefix/bin/consumer.exe")
endif()
execute_process(COMMAND ${_command} OUTPUT_VARIABLE _output COMMAND_ERROR_IS_FATAL ANY)
string(STRIP "${_output}" _output)
if(NOT _output STREQUAL "week: 1930 msec: 0")
  message(FATAL_ERROR "The consumer printed: ${_output}")
endif()
