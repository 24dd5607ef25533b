include(OvintaFindDependencies)
find_package(pugixml REQUIRED)

add_library(ovinta_dependencies INTERFACE)
target_link_libraries(
  ovinta_dependencies
  INTERFACE Threads::Threads CURL::libcurl ICU::uc ICU::i18n Boost::url simdjson::simdjson
            SQLiteCpp PkgConfig::GLIBMM PkgConfig::GEOGRAPHICLIB PkgConfig::GPS)
