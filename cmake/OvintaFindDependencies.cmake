# What the library stands on, all Debian packages; whoever links a static build finds the same.
# OVINTA_DEPENDENCIES_REQUIRED is REQUIRED, or QUIET where the caller looks at what was found. The
# names of what pkg-config finds are the project's own, because other projects look for GIO, too.
find_package(Threads ${OVINTA_DEPENDENCIES_REQUIRED})
find_package(CURL ${OVINTA_DEPENDENCIES_REQUIRED})
find_package(ICU ${OVINTA_DEPENDENCIES_REQUIRED} COMPONENTS uc i18n)
find_package(Boost 1.81 ${OVINTA_DEPENDENCIES_REQUIRED} COMPONENTS url)
find_package(simdjson ${OVINTA_DEPENDENCIES_REQUIRED})
find_package(SQLiteCpp ${OVINTA_DEPENDENCIES_REQUIRED})
find_package(PkgConfig ${OVINTA_DEPENDENCIES_REQUIRED})
if(PkgConfig_FOUND)
  pkg_check_modules(OVINTA_GIO ${OVINTA_DEPENDENCIES_REQUIRED} IMPORTED_TARGET gio-2.0)
  pkg_check_modules(OVINTA_GEOGRAPHICLIB ${OVINTA_DEPENDENCIES_REQUIRED} IMPORTED_TARGET
                    geographiclib)
endif()

# On every platform, and on Linux besides.
set(OVINTA_PORTABLE_TARGETS Threads::Threads simdjson::simdjson)
set(OVINTA_LINUX_TARGETS
    CURL::libcurl ICU::uc ICU::i18n Boost::headers Boost::url SQLiteCpp PkgConfig::OVINTA_GIO
    PkgConfig::OVINTA_GEOGRAPHICLIB)
