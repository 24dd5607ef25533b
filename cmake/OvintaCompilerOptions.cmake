# What every target of the project is compiled with; link to it privately.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

set(OVINTA_SANITIZERS "" CACHE STRING "Sanitizers to build with, as for -fsanitize=")

add_library(ovinta_options INTERFACE)
target_compile_options(ovinta_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow=local -Werror)
if(OVINTA_SANITIZERS)
  add_compile_options(-fsanitize=${OVINTA_SANITIZERS} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${OVINTA_SANITIZERS})
endif()
