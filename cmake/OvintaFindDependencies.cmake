# What the library stands on, all of it Debian packages; whoever links a static build finds the same.
# With OVINTA_DEPENDENCIES_REQUIRED, which is REQUIRED or QUIET, nothing may be missing or it is said
# later. The names of what pkg-config finds are the project's own, because other projects look for
# GIO, too.
set(required ${OVINTA_DEPENDENCIES_REQUIRED})
find_package(Threads ${required})
find_package(CURL ${required})
find_package(ICU ${required} COMPONENTS uc i18n)
find_package(Boost 1.81 ${required} COMPONENTS url)
find_package(simdjson ${required})
find_package(SQLiteCpp ${required})
find_package(PkgConfig ${required})
if(PkgConfig_FOUND)
  pkg_check_modules(OVINTA_GIO ${required} IMPORTED_TARGET gio-2.0)
  pkg_check_modules(OVINTA_GEOGRAPHICLIB ${required} IMPORTED_TARGET geographiclib)
endif()
