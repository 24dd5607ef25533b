#include "cli/manual/Completion.h"

#include "cli/manual/CommandTree.h"
#include "cli/manual/CompletionCases.h"

namespace ovinta::cli {
namespace {

constexpr const char* kBashBeginning =
    R"bash(# Completes the command line of ovinta in bash. Generated.
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

constexpr const char* kBashMiddle = R"bash(        path+=/${COMP_WORDS[i]} ;;
    esac
  done
  case "$path $previous" in
)bash";

constexpr const char* kWords = R"bash(    *)
      case "$path" in
)bash";

constexpr const char* kBashEnd = R"bash(      esac ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -o default -F _ovinta ovinta
)bash";

/// What follows an option that takes a value.
std::string bashValue(const CLI::Option& option) {
  const auto choices = choicesOf(option);
  if (!choices.empty()) return "words=\"" + join(choices, " ") + "\" ;;";
  const std::string name = valueName(option);
  if (name != "FILE" && name != "DIR") return "return ;;";
  return std::string("compopt -o filenames 2>/dev/null; mapfile -t COMPREPLY < <(compgen ") +
         (name == "FILE" ? "-f" : "-d") + " -- \"$current\"); return ;;";
}

std::string wordsCase(const std::string& path, const CLI::App& command) {
  std::vector<std::string> words;
  for (const Offer& offer : offers(command)) words.push_back(offer.word);
  return "        \"" + path + "\") words=\"" + join(words, " ") + "\" ;;\n";
}

}  // namespace

std::string bashCompletion(const CLI::App& root) {
  std::vector<std::string> paths;
  std::string values;
  std::string nextWords;
  forEachPlace(root, [&](const auto& names, const CLI::App& command) {
    const std::string path = pathOf(names);
    if (!names.empty()) paths.push_back(path);
    values += valueCases(path, command, bashValue);
    nextWords += wordsCase(path, command);
  });
  return kBashBeginning + ("      " + join(paths, " | \\\n      ")) + ")\n" + kBashMiddle + values +
         kWords + nextWords + kBashEnd;
}

}  // namespace ovinta::cli
