# Decides whether the Objective-C twin is built: OVINTA_WITH_OBJC.
set(OVINTA_WITH_OBJC FALSE)
if(NOT OVINTA_OBJC)
  return()
endif()
# GNUstep and the Objective-C runtime are not built with the thread sanitizer, and the twin's own
# sources are compiled by another compiler than the rest: it would see neither's locks and report
# races that are none.
if(OVINTA_OBJC STREQUAL "AUTO" AND OVINTA_SANITIZERS MATCHES thread)
  message(STATUS "Objective-C twin: left out under the thread sanitizer")
  return()
endif()

set(CMAKE_OBJC_VISIBILITY_PRESET hidden)
set(CMAKE_OBJCXX_VISIBILITY_PRESET hidden)
set(CMAKE_OBJCXX_STANDARD ${CMAKE_CXX_STANDARD})
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
include(OvintaFoundation)
if(OvintaFoundation_FOUND)
  set(OVINTA_WITH_OBJC TRUE)
elseif(OVINTA_OBJC STREQUAL "AUTO")
  message(STATUS "Objective-C twin: left out, missing ${OvintaFoundation_MISSING}")
else()
  message(FATAL_ERROR "Objective-C twin: missing ${OvintaFoundation_MISSING}")
endif()
