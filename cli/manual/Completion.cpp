#include "cli/manual/Completion.h"

#include "cli/manual/CommandTree.h"

namespace ovinta::cli {
namespace {

constexpr const char* kBeginning = R"bash(# Completes the command line of ovinta in bash. Generated.
_ovinta() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  # "--option=value" comes as three words.
  if [[ $current == = ]]; then
    current=
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  local path= words= i
  for ((i = 1; i < COMP_CWORD; i++)); do
    case "$path/${COMP_WORDS[i]}" in
)bash";

constexpr const char* kMiddle = R"bash(        path+=/${COMP_WORDS[i]} ;;
    esac
  done
  case "$path $previous" in
)bash";

constexpr const char* kWords = R"bash(    *)
      case "$path" in
)bash";

constexpr const char* kEnd = R"bash(      esac ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -o default -F _ovinta ovinta
)bash";

std::string pathOf(const std::vector<std::string>& names) { return "/" + join(names, "/"); }

/// What follows an option that takes a value.
std::string valueCompletion(const CLI::Option& option) {
  const auto choices = choicesOf(option);
  if (!choices.empty()) return "words=\"" + join(choices, " ") + "\" ;;";
  const std::string name = valueName(option);
  if (name != "FILE" && name != "DIR") return "return ;;";
  return std::string("compopt -o filenames 2>/dev/null; mapfile -t COMPREPLY < <(compgen ") +
         (name == "FILE" ? "-f" : "-d") + " -- \"$current\"); return ;;";
}

std::string valueCases(const std::string& path, const CLI::App& command) {
  std::string text;
  for (const CLI::Option* option : allOptions(command)) {
    if (!takesValue(*option) || namesOf(*option).empty()) continue;
    std::vector<std::string> patterns;
    for (const std::string& name : namesOf(*option)) {
      patterns.push_back("\"" + path + " " + name + "\"");
    }
    text += "    " + join(patterns, " | ") + ") " + valueCompletion(*option) + "\n";
  }
  return text;
}

/// The sub-commands and options that may come next.
std::string words(const CLI::App& command) {
  std::vector<std::string> words;
  for (const CLI::App* child : visibleCommands(command)) words.push_back(child->get_name());
  for (const CLI::Option* option : allOptions(command)) {
    for (const std::string& name : namesOf(*option)) words.push_back(name);
  }
  return join(words, " ");
}

std::string wordsCase(const std::string& path, const CLI::App& command) {
  return "        \"" + path + "\") words=\"" + words(command) + "\" ;;\n";
}

}  // namespace

std::string bashCompletion(const CLI::App& root) {
  std::vector<std::string> paths;
  std::string values = valueCases("", root);
  std::string nextWords = wordsCase("", root);
  forEachCommand(root, [&](const auto& names, const CLI::App& command) {
    const std::string path = pathOf(names);
    paths.push_back(path);
    values += valueCases(path, command);
    nextWords += wordsCase(path, command);
  });
  return kBeginning + ("      " + join(paths, " | \\\n      ")) + ")\n" + kMiddle + values +
         kWords + nextWords + kEnd;
}

}  // namespace ovinta::cli
