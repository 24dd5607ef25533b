# What the platform implementations stand on; all of it Debian packages.
find_package(Threads REQUIRED)
find_package(CURL REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(Boost 1.81 REQUIRED COMPONENTS url)
find_package(simdjson REQUIRED)
find_package(SQLiteCpp REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(GLIBMM REQUIRED IMPORTED_TARGET giomm-2.68)
pkg_check_modules(GEOGRAPHICLIB REQUIRED IMPORTED_TARGET geographiclib)
find_package(pugixml REQUIRED)

add_library(ovinta_dependencies INTERFACE)
target_link_libraries(
  ovinta_dependencies
  INTERFACE Threads::Threads CURL::libcurl ICU::uc ICU::i18n Boost::url simdjson::simdjson
            SQLiteCpp PkgConfig::GLIBMM PkgConfig::GEOGRAPHICLIB)
