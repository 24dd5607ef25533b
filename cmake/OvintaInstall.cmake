# `cmake --install`: headers, library, simulation, the command, and the packages by which CMake,
# pkg-config and Meson find them. Three components: what applications need to run, what they need to
# be built, and the tools.
include(CMakePackageConfigHelpers)
set(includeDirectory ${CMAKE_INSTALL_INCLUDEDIR}/OvintaSDK)
set(packageDirectory ${CMAKE_INSTALL_LIBDIR}/cmake/OvintaSDK)
set(pkgConfigDirectory ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(OVINTA_TRIPS_DIRECTORY ${CMAKE_INSTALL_DATADIR}/ovinta-sdk/trips)

# ovinta_install_library(<target> <export set>): with its headers, which are also in its include
# directories, because not every tool knows header sets.
set(exportSets "")
macro(ovinta_install_library target exportSet)
  install(
    TARGETS ${target} EXPORT ${exportSet}
    LIBRARY COMPONENT ovinta_library NAMELINK_COMPONENT ovinta_development
    ARCHIVE COMPONENT ovinta_development
    FILE_SET HEADERS DESTINATION ${includeDirectory} COMPONENT ovinta_development
    INCLUDES DESTINATION ${includeDirectory})
  list(APPEND exportSets ${exportSet})
endmacro()

ovinta_install_library(OvintaSDK OvintaSDKTargets)
get_target_property(type OvintaSDK TYPE)
if(type STREQUAL STATIC_LIBRARY)
  install(TARGETS ovinta_portable_dependencies ovinta_dependencies EXPORT OvintaSDKTargets)
  install(FILES cmake/OvintaFindDependencies.cmake DESTINATION ${packageDirectory}
          COMPONENT ovinta_development)
endif()
if(TARGET OvintaSDKSimulation)
  ovinta_install_library(OvintaSDKSimulation OvintaSDKSimulationTargets)
  install(DIRECTORY trips/ DESTINATION ${OVINTA_TRIPS_DIRECTORY} COMPONENT ovinta_development)
endif()
if(TARGET OvintaSDKObjC)
  ovinta_install_library(OvintaSDKObjC OvintaSDKObjCTargets)
  install(FILES cmake/OvintaFoundation.cmake DESTINATION ${packageDirectory}
          COMPONENT ovinta_development)
  install(DIRECTORY cmake/objc-shim DESTINATION ${packageDirectory} COMPONENT ovinta_development)
endif()
if(TARGET ovinta_command)
  install(TARGETS ovinta_command COMPONENT ovinta_tools)
  install(FILES ${PROJECT_BINARY_DIR}/cli/completions/ovinta
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT ovinta_tools)
  install(FILES ${PROJECT_BINARY_DIR}/cli/completions/_ovinta
          DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions COMPONENT ovinta_tools)
  install(FILES ${PROJECT_BINARY_DIR}/cli/completions/ovinta.fish
          DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT ovinta_tools)
  install(FILES ${PROJECT_BINARY_DIR}/cli/ovinta.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
          COMPONENT ovinta_tools)
endif()

# For CMake. Before 1.0 a minor version may change what applications see.
foreach(set ${exportSets})
  install(EXPORT ${set} NAMESPACE OvintaSDK:: DESTINATION ${packageDirectory}
          COMPONENT ovinta_development)
endforeach()
configure_package_config_file(
  cmake/OvintaSDKConfig.cmake.in ${PROJECT_BINARY_DIR}/OvintaSDKConfig.cmake
  INSTALL_DESTINATION ${packageDirectory} PATH_VARS OVINTA_TRIPS_DIRECTORY)
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(compatibility SameMinorVersion)
else()
  set(compatibility SameMajorVersion)
endif()
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/OvintaSDKConfigVersion.cmake COMPATIBILITY ${compatibility})
install(FILES ${PROJECT_BINARY_DIR}/OvintaSDKConfig.cmake
              ${PROJECT_BINARY_DIR}/OvintaSDKConfigVersion.cmake
        DESTINATION ${packageDirectory} COMPONENT ovinta_development)

# For pkg-config, relative to the files themselves, so that the prefix can be moved. Whoever links
# a static library always needs what it stands on.
cmake_path(SET prefix /prefix)
cmake_path(ABSOLUTE_PATH pkgConfigDirectory BASE_DIRECTORY ${prefix} OUTPUT_VARIABLE from)
cmake_path(RELATIVE_PATH prefix BASE_DIRECTORY ${from} OUTPUT_VARIABLE OVINTA_PC_PREFIX)
list(JOIN OVINTA_PRIVATE_LIBRARIES " " OVINTA_PC_PRIVATE)
set(OVINTA_PC_PUBLIC "")
if(type STREQUAL STATIC_LIBRARY)
  set(OVINTA_PC_PUBLIC " ${OVINTA_PC_PRIVATE}")
endif()
set(modules ovinta-sdk)
if(TARGET OvintaSDKSimulation)
  list(APPEND modules ovinta-sdk-simulation)
endif()
foreach(module ${modules})
  configure_file(cmake/${module}.pc.in ${PROJECT_BINARY_DIR}/${module}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${module}.pc DESTINATION ${pkgConfigDirectory}
          COMPONENT ovinta_development)
endforeach()
