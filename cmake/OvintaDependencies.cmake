set(OVINTA_DEPENDENCIES_REQUIRED REQUIRED)
include(OvintaFindDependencies)
# For the simulation, which not everyone who adds the project needs.
if(PROJECT_IS_TOP_LEVEL OR OVINTA_COMMAND OR OVINTA_BENCHMARKS OR OVINTA_FUZZERS)
  find_package(pugixml REQUIRED)
else()
  find_package(pugixml QUIET)
endif()

# What the library needs on every platform, and on Linux.
add_library(ovinta_portable_dependencies INTERFACE)
target_link_libraries(ovinta_portable_dependencies INTERFACE ${OVINTA_PORTABLE_TARGETS})
add_library(ovinta_dependencies INTERFACE)
target_link_libraries(ovinta_dependencies
                      INTERFACE ovinta_portable_dependencies ${OVINTA_LINUX_TARGETS})
# The same to a linker that knows no targets. Names instead of other pkg-config packages, which would
# have to be there for applications that link the shared library, too.
set(OVINTA_PRIVATE_LIBRARIES
    -lcurl -licui18n -licuuc -lboost_url -lSQLiteCpp -lsqlite3 -lsimdjson -lGeographicLib -lgio-2.0
    -lgobject-2.0 -lglib-2.0 -pthread)
