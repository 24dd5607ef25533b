# `cpack`: the Debian packages of this system, one for each component of what is installed.
# scripts/package builds them as they are to be: with the preset package, for /usr.
set(OVINTA_PACKAGE_CONTACT "OvintaSDK <ovinta-sdk@example.com>"
    CACHE STRING "Who maintains the packages: a name and an address")
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ovinta-sdk)
set(CPACK_PACKAGE_VENDOR OvintaSDK)
set(CPACK_PACKAGE_CONTACT ${OVINTA_PACKAGE_CONTACT})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_VERBATIM_VARIABLES ON)
# What is installed names its prefix, and so must not be installed elsewhere and moved.
set(CPACK_SET_DESTDIR ON)
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE "")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# Dependencies are what the programs and libraries need, by Debian's own lists of symbols.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

# ovinta_package(<component> <package> <section> <summary> <description> [<depends>]): the ones of
# the other packages with the version of this one.
set(CPACK_COMPONENTS_ALL "")
macro(ovinta_package component package section summary description)
  string(TOUPPER ${component} key)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${package})
  set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${key}_DESCRIPTION "${summary}\n${description}")
  set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${ARGN}")
endmacro()
# Debian's list does not know that packed relocations take a glibc that reads them.
set(loader "")
if(packsRelocations AND BUILD_SHARED_LIBS)
  set(loader "libc6 (>= 2.36)")
endif()
set(library libovinta${PROJECT_VERSION_MAJOR})
set(sameLibrary "${library} (= ${PROJECT_VERSION})")
ovinta_package(
  ovinta_library ${library} libs "client library for orders that customers pick up"
  "OvintaSDK keeps the customer of an app and the orders, follows position and
beacons while an order is open, and reports what happens to a REST service.
This package has the shared library."
  "${loader}")
# What others that are packaged with the library depend on, and how the system learns of it.
file(WRITE ${PROJECT_BINARY_DIR}/control/shlibs
     "libOvintaSDK ${PROJECT_VERSION_MAJOR} ${library} (>= ${PROJECT_VERSION})\n")
file(WRITE ${PROJECT_BINARY_DIR}/control/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_OVINTA_LIBRARY_PACKAGE_CONTROL_EXTRA
    ${PROJECT_BINARY_DIR}/control/shlibs ${PROJECT_BINARY_DIR}/control/triggers)
ovinta_package(
  ovinta_development libovinta-dev libdevel "client library for orders - development files"
  "OvintaSDK keeps the customer of an app and the orders, follows position and
beacons while an order is open, and reports what happens to a REST service.
This package has the headers, what CMake, pkg-config and Meson need to find
the library, the simulated device for tests with its trips, and, as static
libraries, that device and the library's form in Objective-C."
  "${sameLibrary}, libpugixml-dev")
set(CPACK_DEBIAN_OVINTA_DEVELOPMENT_PACKAGE_SUGGESTS
    "clang, gobjc++, libblocksruntime-dev, libgnustep-base-dev")
ovinta_package(
  ovinta_tools ovinta-tools utils "orders that customers pick up, from the shell"
  "The command ovinta has every operation of OvintaSDK, a service to try them on
and a check of the device. The agent ovinta-notify-agent shows notifications
near stores while their applications do not run."
  "${sameLibrary}")
set(CPACK_DEBIAN_OVINTA_TOOLS_PACKAGE_RECOMMENDS dbus-user-session)
set(CPACK_DEBIAN_OVINTA_TOOLS_PACKAGE_SUGGESTS "geoclue-2.0, bluez, upower")

set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/OvintaPackageDocuments.cmake)
include(CPack)
