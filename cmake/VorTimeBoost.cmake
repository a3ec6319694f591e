# Defines vortime::boost. VORTIME_BOOST selects where Boost 1.81 comes from:
#   package  find_package(Boost 1.81) (Linux packages, vcpkg, an own build)
#   source   headers of the Debian package and five files of its source package, built here (MinGW)
set(_default package)
if(MINGW)
  set(_default source)
endif()
set(VORTIME_BOOST ${_default} CACHE STRING "Where Boost comes from: package or source")
set_property(CACHE VORTIME_BOOST PROPERTY STRINGS package source)

add_library(vortime_boost INTERFACE)
add_library(vortime::boost ALIAS vortime_boost)
set_target_properties(vortime_boost PROPERTIES EXPORT_NAME boost)

if(VORTIME_BOOST STREQUAL "package")
  find_package(Boost 1.81 REQUIRED COMPONENTS thread chrono date_time filesystem)
  target_link_libraries(vortime_boost INTERFACE Boost::headers Boost::thread Boost::chrono Boost::date_time Boost::filesystem)
  return()
endif()

if(DEFINED ENV{XDG_CACHE_HOME})
  set(_cache "$ENV{XDG_CACHE_HOME}")
elseif(DEFINED ENV{HOME})
  set(_cache "$ENV{HOME}/.cache")
else()
  set(_cache "${PROJECT_BINARY_DIR}/cache")
endif()
set(VORTIME_BOOST_INCLUDE /usr/include/boost CACHE PATH "The boost header directory (libboost1.81-dev)")
set(VORTIME_BOOST_SOURCE "${_cache}/vortime/boost-1.81.0" CACHE PATH "Cache of the Boost 1.81 source files")
if(NOT EXISTS "${VORTIME_BOOST_SOURCE}/libs/thread/src/win32/thread.cpp")
  message(STATUS "Fetching the Boost 1.81 source package into ${VORTIME_BOOST_SOURCE}")
  execute_process(COMMAND sh "${PROJECT_SOURCE_DIR}/tools/fetch_boost_source.sh" "${VORTIME_BOOST_SOURCE}" RESULT_VARIABLE _rc
                  OUTPUT_QUIET)
  if(_rc)
    message(FATAL_ERROR "The Boost source package could not be fetched; set VORTIME_BOOST_SOURCE to an unpacked Boost 1.81")
  endif()
endif()
file(STRINGS "${VORTIME_BOOST_INCLUDE}/version.hpp" _version REGEX "define BOOST_VERSION ")
if(NOT _version MATCHES "108100")
  message(FATAL_ERROR "Boost 1.81 headers wanted, found: ${_version}")
endif()

vortime_header_package(boost_headers "${VORTIME_BOOST_INCLUDE}")

set(_libs "${VORTIME_BOOST_SOURCE}/libs")
# DLLs, not archives: the thread library keeps per-thread data (interruption) that every module must share.
add_library(boost_chrono SHARED "${_libs}/chrono/src/chrono.cpp")
target_link_libraries(boost_chrono PUBLIC $<BUILD_INTERFACE:vortime_headers_boost_headers> $<INSTALL_INTERFACE:Boost::headers>)
target_compile_definitions(
  boost_chrono
  PRIVATE BOOST_CHRONO_SOURCE
  PUBLIC _WIN32_WINNT=0x0601 BOOST_ALL_NO_LIB BOOST_CHRONO_DYN_LINK)
add_library(
  boost_thread SHARED
  "${_libs}/thread/src/win32/thread.cpp" "${_libs}/thread/src/win32/thread_primitives.cpp" "${_libs}/thread/src/win32/tss_pe.cpp"
  "${_libs}/thread/src/win32/tss_dll.cpp")
target_compile_definitions(
  boost_thread
  PRIVATE BOOST_THREAD_BUILD_DLL
  INTERFACE BOOST_THREAD_USE_DLL)
target_link_libraries(boost_thread PUBLIC boost_chrono)
set_target_properties(boost_chrono boost_thread PROPERTIES PREFIX "" CXX_VISIBILITY_PRESET default)
foreach(_target boost_chrono boost_thread)
  target_compile_options(${_target} PRIVATE -w)
endforeach()
target_link_libraries(vortime_boost INTERFACE boost_thread)
