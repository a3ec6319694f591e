# Functions for tests of an installation: install the build tree into an empty folder, then configure, build and run a
# project that knows only this folder. Set: BUILD_DIR, WORK_DIR, CONFIG, GENERATOR, COMPILER; for another system also
# TOOLCHAIN_FILE, BOOST_INCLUDE, RUN_WINE and WINE_PREFIX.
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(install_tree)
  file(REMOVE_RECURSE "${WORK_DIR}")
  run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --config "${CONFIG}" --prefix "${WORK_DIR}/prefix")
endfunction()

# build_project(<source folder> [<configuration>])
function(build_project source)
  set(_config "${CONFIG}")
  if(ARGC GREATER 1)
    set(_config "${ARGV1}")
  endif()
  set(_options "-DCMAKE_BUILD_TYPE=${_config}")
  if(TOOLCHAIN_FILE)
    # A toolchain file for another system confines every search to that system's own folders.
    list(APPEND _options "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN_FILE}" "-DVorTime_DIR=${WORK_DIR}/prefix/lib/cmake/VorTime"
         "-DBoost_INCLUDE_DIR=${BOOST_INCLUDE}")
  else()
    list(APPEND _options "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_PREFIX_PATH=${WORK_DIR}/prefix")
  endif()
  run("${CMAKE_COMMAND}" -S "${source}" -B "${WORK_DIR}/build" -G "${GENERATOR}" ${_options})
  run("${CMAKE_COMMAND}" --build "${WORK_DIR}/build")
endfunction()

# run_program(<name> <variable for its output> [<argument>...]): a program of the project, beside the installed libraries.
function(run_program name output)
  set(_command "${WORK_DIR}/build/${name}")
  if(RUN_WINE)
    file(COPY "${_command}.exe" DESTINATION "${WORK_DIR}/prefix/bin")
    set(_command "${RUN_WINE}" "${WINE_PREFIX}" "${WORK_DIR}/prefix/bin/${name}.exe")
  endif()
  execute_process(COMMAND ${_command} ${ARGN} WORKING_DIRECTORY "${WORK_DIR}" OUTPUT_VARIABLE _output RESULT_VARIABLE _result)
  string(STRIP "${_output}" _output)
  if(NOT _result EQUAL 0)
    message(FATAL_ERROR "${name} ended with ${_result}:\n${_output}")
  endif()
  set(${output} "${_output}" PARENT_SCOPE)
endfunction()
