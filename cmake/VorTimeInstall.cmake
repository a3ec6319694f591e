# Installation and the package that find_package(VorTime) reads: KTX::TIM, KTX::RCV and KTX::DBG.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/VorTime")
set(_targets VorTime VorTimeReceiver Logging vortime_boost)
if(VORTIME_BOOST STREQUAL "source")
  list(APPEND _targets boost_thread boost_chrono)
  install(FILES "${VORTIME_BOOST_SOURCE}/LICENSE_1_0.txt" DESTINATION "${CMAKE_INSTALL_DOCDIR}" RENAME LICENSE-boost.txt
          COMPONENT library)
endif()
install(TARGETS ${_targets} EXPORT VorTimeTargets COMPONENT library INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
if(VORTIME_RUNTIME_DLLS)
  install(FILES ${VORTIME_RUNTIME_DLLS} DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT library)
endif()
# The licence texts of what others wrote and the package holds, as their Debian packages state them.
set(_holds libspdlog-dev libfmt-dev libcli11-dev nlohmann-json3-dev)
if(MINGW)
  list(APPEND _holds gcc-mingw-w64-x86-64-posix-runtime mingw-w64-x86-64-dev)
endif()
foreach(_package ${_holds})
  if(EXISTS "/usr/share/doc/${_package}/copyright")
    install(FILES "/usr/share/doc/${_package}/copyright" DESTINATION "${CMAKE_INSTALL_DOCDIR}" RENAME "LICENSE-${_package}.txt"
            COMPONENT library)
  endif()
endforeach()
install(FILES "${PROJECT_SOURCE_DIR}/README.md" "${PROJECT_SOURCE_DIR}/CHANGELOG.md" DESTINATION "${CMAKE_INSTALL_DOCDIR}"
        COMPONENT library)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/include/KTX" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" COMPONENT library)

install(EXPORT VorTimeTargets NAMESPACE KTX:: DESTINATION "${_package_dir}" COMPONENT library)
configure_package_config_file("${PROJECT_SOURCE_DIR}/cmake/VorTimeConfig.cmake.in" "${PROJECT_BINARY_DIR}/VorTimeConfig.cmake"
                              INSTALL_DESTINATION "${_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VorTimeConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/VorTimeConfig.cmake" "${PROJECT_BINARY_DIR}/VorTimeConfigVersion.cmake"
        DESTINATION "${_package_dir}" COMPONENT library)
