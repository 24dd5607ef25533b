#include "cli/manual/CommandTree.h"
#include "cli/manual/Completion.h"

namespace ovinta::cli {
namespace {

using Names = std::vector<std::string>;

constexpr const char* kFishBeginning =
    R"fish(# Completes the command line of ovinta in fish. Generated.
function __ovinta_at
  set -l place /
  set -l words (commandline -opc)
  for word in $words[2..-1]
    switch "$place$word/"
      case )fish";

constexpr const char* kFishMiddle = R"fish(
        set place "$place$word/"
    end
  end
  test "$place" = "$argv[1]"
end
)fish";

std::string placeOf(const Names& names) {
  return names.empty() ? "/" : "/" + join(names, "/") + "/";
}

/// The text as one word of the shell.
std::string quoted(const std::string& text) {
  std::string word = "'";
  for (const char character : text) {
    if (character == '\'' || character == '\\') word += '\\';
    word += character;
  }
  return word + "'";
}

std::string valuePart(const CLI::Option& option) {
  if (!takesValue(option)) return "";
  const Names choices = choicesOf(option);
  if (!choices.empty()) return " -x -a " + quoted(join(choices, " "));
  const std::string name = valueName(option);
  if (name == "FILE") return " -r -F";
  return name == "DIR" ? " -x -a '(__fish_complete_directories)'" : " -x";
}

/// What is completed of an option, or of a positional's value.
std::string optionLine(const std::string& beginning, const CLI::Option& option) {
  std::string line = beginning;
  if (option.get_positional()) {
    const Names choices = choicesOf(option);
    if (choices.empty()) return valueName(option) == "FILE" ? line + " -F\n" : "";
    line += " -a " + quoted(join(choices, " "));
  } else {
    for (const std::string& name : option.get_snames()) line += " -s " + name;
    for (const std::string& name : option.get_lnames()) line += " -l " + name;
    line += valuePart(option);
  }
  return line + " -d " + quoted(option.get_description()) + "\n";
}

}  // namespace

std::string fishCompletion(const CLI::App& root) {
  Names paths;
  std::string lines = "complete -c ovinta -f\n";
  forEachPlace(root, [&](const Names& names, const CLI::App& command) {
    const std::string path = placeOf(names);
    if (!names.empty()) paths.push_back(path);
    const std::string beginning = "complete -c ovinta -n '__ovinta_at " + path + "'";
    for (const CLI::App* child : visibleCommands(command)) {
      lines +=
          beginning + " -a " + child->get_name() + " -d " + quoted(child->get_description()) + "\n";
    }
    for (const CLI::Option* option : offeredOptions(command)) {
      lines += optionLine(beginning, *option);
    }
  });
  return kFishBeginning + join(paths, " ") + kFishMiddle + lines;
}

}  // namespace ovinta::cli
