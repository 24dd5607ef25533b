# What is built. In a build of its own the project builds everything that the machine has the means
# for; a project that adds it to itself gets the library, the simulation where it is used, and
# otherwise what it asks for.
option(OVINTA_TESTS "Build the tests, and what they try: the command and the sandbox"
       ${PROJECT_IS_TOP_LEVEL})
option(OVINTA_COMMAND "Build the command ovinta, which holds the sandbox" ${PROJECT_IS_TOP_LEVEL})
option(OVINTA_SANDBOX "Build the sandbox, the service on one's own machine"
       ${PROJECT_IS_TOP_LEVEL})
option(OVINTA_INSTALL "Install headers, libraries, packages and programs" ${PROJECT_IS_TOP_LEVEL})
option(OVINTA_PACKED_RELOCATIONS
       "Pack the relocations of the optimised library where linker and C library can" ON)
option(OVINTA_BENCHMARKS "Build the benchmarks" OFF)
option(OVINTA_FUZZERS "Build the fuzzers, with clang; see the preset fuzz" OFF)
if(PROJECT_IS_TOP_LEVEL)
  set(objcDefault AUTO)
else()
  set(objcDefault OFF)
endif()
set(OVINTA_OBJC ${objcDefault}
    CACHE STRING "Build the Objective-C twin: ON, OFF, or AUTO for where it can be")
set_property(CACHE OVINTA_OBJC PROPERTY STRINGS ON OFF AUTO)
set(OVINTA_SANITIZERS "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")

# What another part needs is built with it.
if(OVINTA_TESTS)
  set(OVINTA_COMMAND ON)
endif()
if(OVINTA_COMMAND OR OVINTA_BENCHMARKS)
  set(OVINTA_SANDBOX ON)
endif()

# Elsewhere BUILD_SHARED_LIBS, and what stands where, is the other project's.
if(PROJECT_IS_TOP_LEVEL)
  option(BUILD_SHARED_LIBS "Build the library as a shared one" ON)
endif()
if(PROJECT_IS_TOP_LEVEL OR OVINTA_INSTALL)
  include(GNUInstallDirs)
endif()
