# What every target of the project is compiled with; link to ovinta_options privately.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
if(PROJECT_IS_TOP_LEVEL)
  set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
endif()

add_library(ovinta_options INTERFACE)
target_compile_options(
  ovinta_options INTERFACE -Wall -Wextra -Wpedantic
                           $<IF:$<COMPILE_LANG_AND_ID:CXX,GNU>,-Wshadow=local,-Wshadow>)
# Where it optimises, g++ 12 warns of uninitialised values in an empty std::optional, which are never
# read, and of std::string copying over itself (its bugs 80635 and 105651). clang and the sanitizers
# look for both.
target_compile_options(
  ovinta_options
  INTERFACE
    "$<$<AND:$<COMPILE_LANG_AND_ID:CXX,GNU>,$<NOT:$<CONFIG:Debug>>>:-Wno-maybe-uninitialized;-Wno-restrict>"
)
# Where sources are compiled together, g++ takes each for a header, whose types must have no member
# of an unnamed namespace.
target_compile_options(
  ovinta_options
  INTERFACE
    "$<$<AND:$<COMPILE_LANG_AND_ID:CXX,GNU>,$<BOOL:${CMAKE_UNITY_BUILD}>>:-Wno-subobject-linkage>"
)
# A product and a sum are rounded each, also where the processor could do both at once (arm64 always
# can): the same samples give the service the same figures from every device.
target_compile_options(ovinta_options INTERFACE -ffp-contract=off)
if(OVINTA_SANITIZERS)
  # A program holds one compiler's sanitizers: the one that links it, which is the C++ compiler.
  add_compile_options(
    "$<$<OR:$<COMPILE_LANGUAGE:CXX>,$<CXX_COMPILER_ID:Clang>>:-fsanitize=${OVINTA_SANITIZERS};-fno-omit-frame-pointer;-fno-sanitize-recover=all>"
  )
  add_link_options(-fsanitize=${OVINTA_SANITIZERS})
endif()
