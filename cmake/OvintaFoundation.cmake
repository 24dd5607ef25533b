# Objective-C for the twin and for applications of it, beside a C++ compiler of any kind: clang with
# GCC's runtime, GNUstep's Foundation, blocks. Sets OvintaFoundation_FOUND, else
# OvintaFoundation_MISSING; enables both languages and makes the target OvintaSDK::Foundation.
if(TARGET OvintaSDK::Foundation)
  set(OvintaFoundation_FOUND TRUE)
  set(OvintaFoundation_MISSING "")
  return()
endif()
set(OvintaFoundation_FOUND FALSE)
find_program(OVINTA_OBJC_COMPILER clang)
find_program(OVINTA_OBJCXX_COMPILER clang++)
find_library(OVINTA_GNUSTEP_LIBRARY gnustep-base)
find_library(OVINTA_BLOCKS_LIBRARY BlocksRuntime)
find_path(OVINTA_GNUSTEP_INCLUDE_DIR Foundation/Foundation.h PATH_SUFFIXES GNUstep)
find_path(OVINTA_BLOCKS_INCLUDE_DIR Block.h)
file(GLOB ovintaRuntimeHeaders /usr/lib/gcc/*/*/include/objc/objc.h)
list(SORT ovintaRuntimeHeaders COMPARE NATURAL ORDER DESCENDING)
set(ovintaRuntimeHeader "")
if(ovintaRuntimeHeaders)
  list(GET ovintaRuntimeHeaders 0 ovintaRuntimeHeader)
endif()

set(OvintaFoundation_MISSING "")
foreach(part OVINTA_OBJC_COMPILER OVINTA_OBJCXX_COMPILER OVINTA_GNUSTEP_LIBRARY
             OVINTA_BLOCKS_LIBRARY OVINTA_GNUSTEP_INCLUDE_DIR OVINTA_BLOCKS_INCLUDE_DIR
             ovintaRuntimeHeader)
  if(NOT ${part})
    list(APPEND OvintaFoundation_MISSING ${part})
  endif()
endforeach()
if(OvintaFoundation_MISSING)
  return()
endif()

# Before the languages are enabled: the default would be GCC's compilers, which know no blocks.
foreach(language OBJC OBJCXX)
  if(NOT CMAKE_${language}_COMPILER)
    set(CMAKE_${language}_COMPILER ${OVINTA_${language}_COMPILER})
  endif()
endforeach()
enable_language(OBJC)
enable_language(OBJCXX)

cmake_path(GET ovintaRuntimeHeader PARENT_PATH ovintaRuntimeInclude)
cmake_path(GET ovintaRuntimeInclude PARENT_PATH ovintaRuntimeInclude)
cmake_path(GET ovintaRuntimeInclude PARENT_PATH ovintaRuntimeDirectory)
find_library(OVINTA_OBJC_RUNTIME_LIBRARY objc HINTS ${ovintaRuntimeDirectory} REQUIRED)

add_library(OvintaSDK::Foundation INTERFACE IMPORTED GLOBAL)
set(isObjC $<COMPILE_LANGUAGE:OBJC,OBJCXX>)
target_include_directories(OvintaSDK::Foundation SYSTEM
                           INTERFACE ${CMAKE_CURRENT_LIST_DIR}/objc-shim
                                     ${OVINTA_GNUSTEP_INCLUDE_DIR})
target_compile_definitions(
  OvintaSDK::Foundation
  INTERFACE $<${isObjC}:GNUSTEP;GNUSTEP_BASE_LIBRARY=1;GNU_RUNTIME=1;_NATIVE_OBJC_EXCEPTIONS>)
# Searched last: the folder of the runtime's headers also holds GCC's own stddef.h and intrinsics,
# which must not stand before clang's. Properties are not synthesized by themselves with this
# runtime, so one without its methods is an error.
target_compile_options(
  OvintaSDK::Foundation
  INTERFACE
    "$<${isObjC}:SHELL:-fobjc-runtime=gcc -fblocks -fobjc-exceptions -fexceptions -fconstant-string-class=NSConstantString -Werror=objc-property-implementation -idirafter ${ovintaRuntimeInclude}>"
)
# In this order: gnustep-base brings a `_Block_copy` of its own, for blocks of another layout, which
# hands clang's back uncopied. The first library in a program's list wins.
target_link_libraries(
  OvintaSDK::Foundation INTERFACE ${OVINTA_BLOCKS_LIBRARY} ${OVINTA_GNUSTEP_LIBRARY}
                                  ${OVINTA_OBJC_RUNTIME_LIBRARY} ${CMAKE_DL_LIBS})
set(OvintaFoundation_FOUND TRUE)
