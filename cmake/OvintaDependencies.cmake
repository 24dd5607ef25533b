include(OvintaFindDependencies)
find_package(pugixml REQUIRED)

# What the library needs on every platform, and on Linux.
add_library(ovinta_portable_dependencies INTERFACE)
target_link_libraries(ovinta_portable_dependencies INTERFACE Threads::Threads simdjson::simdjson)
add_library(ovinta_dependencies INTERFACE)
target_link_libraries(
  ovinta_dependencies
  INTERFACE ovinta_portable_dependencies CURL::libcurl ICU::uc ICU::i18n Boost::headers Boost::url
            SQLiteCpp PkgConfig::GIO PkgConfig::GEOGRAPHICLIB)
