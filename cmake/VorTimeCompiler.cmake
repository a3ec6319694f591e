# Compile rules of every target, and vortime_warnings for this project's own targets.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
if(NOT WIN32)
  include(GNUInstallDirs)
  set(CMAKE_INSTALL_RPATH "$ORIGIN;$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
endif()

if(NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER AND NOT DEFINED ENV{CMAKE_CXX_COMPILER_LAUNCHER})
  find_program(VORTIME_CCACHE ccache)
  if(VORTIME_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${VORTIME_CCACHE}")
  endif()
endif()

add_library(vortime_warnings INTERFACE)

if(NOT MSVC)
  # A fused multiply-add or x87 arithmetic changes the last bit, and with it a millisecond of a result.
  add_compile_options(-ffp-contract=off)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i[3-6]86)$")
    add_compile_options(-msse2 -mfpmath=sse)
  endif()
  # __FILE__ reads the same on every machine. A compiler cache may pass the path relative to the build tree.
  file(RELATIVE_PATH _vortime_relative_root "${CMAKE_BINARY_DIR}" "${PROJECT_SOURCE_DIR}")
  add_compile_options(-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/= -fmacro-prefix-map=${_vortime_relative_root}=)

  target_compile_options(
    vortime_warnings
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wconversion
              -Wsign-conversion
              -Wshadow
              -Wold-style-cast
              -Wnon-virtual-dtor
              -Woverloaded-virtual
              -Wformat=2
              -Wundef
              -Wcast-qual
              $<$<AND:$<CXX_COMPILER_ID:Clang>,$<NOT:$<BOOL:$<TARGET_PROPERTY:VORTIME_TEST>>>>:-Wthread-safety>
              $<$<BOOL:${VORTIME_WERROR}>:-Werror>)
endif()

if(VORTIME_SANITIZE)
  add_compile_options(-fsanitize=${VORTIME_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${VORTIME_SANITIZE})
endif()
if(VORTIME_COVERAGE)
  # Counted atomically: what threads count at the same moment would else be lost, or turn negative.
  add_compile_options(--coverage -fprofile-abs-path -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
if(VORTIME_SANITIZE MATCHES "thread")
  # The thread sanitizer of GCC 12 does not know every layout that address space randomisation gives.
  execute_process(COMMAND setarch -R true RESULT_VARIABLE _vortime_setarch ERROR_QUIET)
  if(_vortime_setarch EQUAL 0)
    set(CMAKE_CROSSCOMPILING_EMULATOR "setarch;-R")
  endif()
endif()
