# vortime_header_package(<name> <directory>): target vortime::<name> that offers the headers of <directory>,
# a folder of the distribution, and nothing else. The folder above it would bring the host's C headers
# into a build for another system.
function(vortime_header_package name directory)
  if(NOT IS_DIRECTORY "${directory}")
    message(FATAL_ERROR "${directory} is missing; tools/install_packages.sh installs it")
  endif()
  get_filename_component(_folder "${directory}" NAME)
  set(_include "${PROJECT_BINARY_DIR}/header-packages/${name}")
  file(MAKE_DIRECTORY "${_include}")
  file(CREATE_LINK "${directory}" "${_include}/${_folder}" SYMBOLIC)
  add_library(vortime_headers_${name} INTERFACE)
  add_library(vortime::${name} ALIAS vortime_headers_${name})
  target_include_directories(vortime_headers_${name} SYSTEM INTERFACE "$<BUILD_INTERFACE:${_include}>")
endfunction()
