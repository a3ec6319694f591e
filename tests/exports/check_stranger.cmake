# Builds and runs the program that knows the library from outside, against an installation. Set CONSUMER_DIR, LIBRARY and
# TICK_ENTRY for the loader, and what InstalledProject.cmake asks for; where CHECK_USE names the program that compares
# the imports with the exports, also PYTHON, OBJDUMP and DEF_FILE.
include("${CMAKE_CURRENT_LIST_DIR}/InstalledProject.cmake")
install_tree()
# Without optimisation a class of the program refers to the vtables of its bases in the library.
build_project("${CONSUMER_DIR}" Debug)
run_program(stranger _output)
message(STATUS "${_output}")
if(CHECK_USE)
  run("${PYTHON}" "${CHECK_USE}" "${OBJDUMP}" "${WORK_DIR}/build/stranger.exe" "${DEF_FILE}")
endif()
run_program(loader _output "${LIBRARY}" "${TICK_ENTRY}")
message(STATUS "${_output}")
