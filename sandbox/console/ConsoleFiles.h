#pragma once

#include <span>
#include <string_view>

namespace ovinta::sandbox {

/// A file of the page for people, as it stands in `page/`.
struct ConsoleFile {
  std::string_view name;
  std::string_view content;
};

/// All of them; the page itself is "page.html".
std::span<const ConsoleFile> consoleFiles();

}  // namespace ovinta::sandbox
