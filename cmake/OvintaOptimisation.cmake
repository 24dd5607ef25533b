# What an optimised build of the library is optimised for. Most of it waits for others and would only
# be larger for being faster: it is compiled for size. What the benchmarks show to gain by it is
# compiled as the build type says.
set(isOptimised $<CONFIG:Release,RelWithDebInfo>)

# ovinta_compile_for_size(<target>... EXCEPT <pattern>...): compiles the sources of the targets for
# size save those that match, and all with each function and variable apart, so that linkers can
# leave out the ones that nobody uses. Comes after the targets have their sources.
function(ovinta_compile_for_size)
  # A source with options of its own would be compiled apart.
  if(CMAKE_UNITY_BUILD)
    return()
  endif()
  cmake_parse_arguments(PARSE_ARGV 0 argument "" "" EXCEPT)
  foreach(pattern ${argument_EXCEPT})
    file(GLOB found CONFIGURE_DEPENDS ${pattern})
    if(NOT found)
      message(FATAL_ERROR "No source matches ${pattern}")
    endif()
    list(APPEND fast ${found})
  endforeach()
  foreach(target ${argument_UNPARSED_ARGUMENTS})
    target_compile_options(
      ${target} PRIVATE "$<${isOptimised}:-ffunction-sections;-fdata-sections>")
    get_target_property(sources ${target} SOURCES)
    list(FILTER sources INCLUDE REGEX "\\.cpp$")
    list(REMOVE_ITEM sources ${fast})
    if(sources)
      set_source_files_properties(${sources} TARGET_DIRECTORY ${target}
                                  PROPERTIES COMPILE_OPTIONS "$<${isOptimised}:-Os>")
    endif()
  endforeach()
endfunction()
