# Builds the example of the receiver library against an installation and lets it read a recorded receiver. Set CONSUMER_DIR,
# LOG and what InstalledProject.cmake asks for.
include("${CMAKE_CURRENT_LIST_DIR}/InstalledProject.cmake")
install_tree()
build_project("${CONSUMER_DIR}")
run_program(receiver_service _output "${LOG}")
if(NOT _output MATCHES "^GPS week [0-9]+, [0-9]+ ms: changed by -[0-9]+ ms")
  message(FATAL_ERROR "The service printed: ${_output}")
endif()
