# cmake -DOUT=<file> -P embed.cmake <text file>...
#
# Writes the C++ source with `consoleFiles`: each file as a literal. A file is UTF-8 of at most 64 KiB,
# the longest literal that every compiler takes, and holds neither )~~~" nor carriage returns.
set(entries "")
math(EXPR last "${CMAKE_ARGC} - 1")
foreach(index RANGE ${last})
  set(file "${CMAKE_ARGV${index}}")
  if(isFile)
    get_filename_component(name "${file}" NAME)
    file(SIZE "${file}" size)
    if(size GREATER 65536)
      message(FATAL_ERROR "${file} is too long")
    endif()
    file(READ "${file}" text)
    string(APPEND entries "    {\"${name}\", R\"~~~(${text})~~~\"},\n")
  elseif(index GREATER 0 AND file STREQUAL "${CMAKE_SCRIPT_MODE_FILE}")
    set(isFile TRUE)
  endif()
endforeach()
file(WRITE "${OUT}" "#include \"sandbox/console/ConsoleFiles.h\"

#include <array>

namespace ovinta::sandbox {
namespace {

constexpr auto kFiles = std::to_array<ConsoleFile>({
${entries}});

}  // namespace

std::span<const ConsoleFile> consoleFiles() { return kFiles; }

}  // namespace ovinta::sandbox
")
