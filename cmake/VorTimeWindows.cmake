# Helpers of the Windows build: runtime DLLs beside the programs, the wine prefix of the build tree.
set(VORTIME_WINEPREFIX "${PROJECT_BINARY_DIR}/wine" CACHE PATH "Wine prefix of the test runs")
set(VORTIME_RUNTIME_DLLS)
if(MINGW)
  foreach(_dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${_dll} OUTPUT_VARIABLE _path
                    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    file(COPY "${_path}" DESTINATION "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
    list(APPEND VORTIME_RUNTIME_DLLS "${_path}")
  endforeach()
endif()
if(WIN32 AND CMAKE_HOST_UNIX)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${PROJECT_SOURCE_DIR}/tools/run_wine.sh;${VORTIME_WINEPREFIX}")
endif()
