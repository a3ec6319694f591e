# Builds and runs a three-line project against an installation. Set CONSUMER_DIR and what InstalledProject.cmake asks for.
include("${CMAKE_CURRENT_LIST_DIR}/InstalledProject.cmake")
install_tree()
build_project("${CONSUMER_DIR}")
run_program(consumer _output)
if(NOT _output STREQUAL "week: 1930 msec: 0")
  message(FATAL_ERROR "The consumer printed: ${_output}")
endif()
