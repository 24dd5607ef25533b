# What an optimised build of the library is optimised for. Most of it waits for others and would only
# be larger for being faster: it is compiled for size. What runs for every request, record or byte of
# an answer is compiled as the build type says.
set(isOptimised $<CONFIG:Release,RelWithDebInfo>)

# ovinta_compile_for_size(<target>...): compiles the targets for size, with each function and variable
# apart, so that linkers can leave out the ones that nobody uses.
function(ovinta_compile_for_size)
  foreach(target ${ARGN})
    target_compile_options(
      ${target} PRIVATE "$<${isOptimised}:-Os;-ffunction-sections;-fdata-sections>")
  endforeach()
endfunction()

# ovinta_compile_for_speed(<pattern>...): excepts the sources of this directory's targets that match.
function(ovinta_compile_for_speed)
  file(GLOB sources CONFIGURE_DEPENDS ${ARGN})
  set_source_files_properties(
    ${sources} PROPERTIES COMPILE_OPTIONS "$<$<CONFIG:Release>:-O3>;$<$<CONFIG:RelWithDebInfo>:-O2>")
endfunction()
