# `cmake --install`: headers, library, simulation, the command, and the package for find_package.
include(CMakePackageConfigHelpers)
set(includeDirectory ${CMAKE_INSTALL_INCLUDEDIR}/OvintaSDK)
set(packageDirectory ${CMAKE_INSTALL_LIBDIR}/cmake/OvintaSDK)

install(TARGETS OvintaSDK EXPORT OvintaSDKTargets FILE_SET HEADERS DESTINATION ${includeDirectory})
if(NOT BUILD_SHARED_LIBS)
  install(TARGETS ovinta_portable_dependencies ovinta_dependencies EXPORT OvintaSDKTargets)
  install(FILES cmake/OvintaFindDependencies.cmake DESTINATION ${packageDirectory})
endif()
install(TARGETS ovinta_simulation EXPORT OvintaSDKSimulationTargets
        FILE_SET HEADERS DESTINATION ${includeDirectory})
if(TARGET ovinta)
  install(TARGETS ovinta)
  install(FILES ${PROJECT_BINARY_DIR}/cli/completions/ovinta
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES ${PROJECT_BINARY_DIR}/cli/ovinta.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()

set(exportSets OvintaSDKTargets OvintaSDKSimulationTargets)
if(OVINTA_WITH_OBJC)
  install(TARGETS OvintaObjC EXPORT OvintaSDKObjCTargets
          FILE_SET HEADERS DESTINATION ${includeDirectory})
  install(FILES cmake/OvintaFoundation.cmake DESTINATION ${packageDirectory})
  install(DIRECTORY cmake/objc-shim DESTINATION ${packageDirectory})
  list(APPEND exportSets OvintaSDKObjCTargets)
endif()

foreach(set ${exportSets})
  install(EXPORT ${set} NAMESPACE OvintaSDK:: DESTINATION ${packageDirectory})
endforeach()
configure_package_config_file(
  cmake/OvintaSDKConfig.cmake.in ${PROJECT_BINARY_DIR}/OvintaSDKConfig.cmake
  INSTALL_DESTINATION ${packageDirectory})
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/OvintaSDKConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/OvintaSDKConfig.cmake
              ${PROJECT_BINARY_DIR}/OvintaSDKConfigVersion.cmake DESTINATION ${packageDirectory})
