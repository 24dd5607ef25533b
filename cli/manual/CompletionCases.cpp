#include "cli/manual/CompletionCases.h"

#include "cli/manual/CommandTree.h"

namespace ovinta::cli {

std::string pathOf(const std::vector<std::string>& names) {
  return names.empty() ? "" : "/" + join(names, "/");
}

std::string valueCases(const std::string& path, const CLI::App& command,
                       std::string (*completion)(const CLI::Option& option)) {
  std::string text;
  for (const CLI::Option* option : offeredOptions(command)) {
    if (!takesValue(*option) || namesOf(*option).empty()) continue;
    std::vector<std::string> patterns;
    for (const std::string& name : namesOf(*option)) {
      patterns.push_back("\"" + path + " " + name + "\"");
    }
    text += "    " + join(patterns, " | ") + ") " + completion(*option) + "\n";
  }
  return text;
}

}  // namespace ovinta::cli
