#include "cli/manual/CommandTree.h"
#include "cli/manual/Completion.h"
#include "cli/manual/CompletionCases.h"

namespace ovinta::cli {
namespace {

using Names = std::vector<std::string>;

constexpr const char* kZshBeginning = R"zsh(#compdef ovinta
# Completes the command line of ovinta in zsh. Generated.
_ovinta() {
  local previous=${words[CURRENT-1]} place= i
  local -a offers
  for ((i = 2; i < CURRENT; i++)); do
    case "$place/${words[i]}" in
)zsh";

constexpr const char* kZshMiddle = R"zsh(        place+=/${words[i]} ;;
    esac
  done
  if [[ $PREFIX == --*=* ]]; then
    previous=${PREFIX%%=*}
    compset -P '*='
  fi
  case "$place $previous" in
)zsh";

constexpr const char* kZshOffers = R"zsh(  esac
  case "$place" in
)zsh";

constexpr const char* kZshEnd = R"zsh(  esac
  _describe ovinta offers || _files
}
if [[ ${funcstack[1]-} == _ovinta ]]; then
  _ovinta "$@"
else
  compdef _ovinta ovinta
fi
)zsh";

/// The text as one word of the shell; a colon would end the name that is described.
std::string quoted(const Offer& offer) {
  std::string text = "'" + offer.word + ":";
  for (const char character : offer.description) {
    if (character == '\'') {
      text += "'\\''";
    } else if (character == ':') {
      text += "\\:";
    } else {
      text += character;
    }
  }
  return text + "'";
}

std::string zshValue(const CLI::Option& option) {
  const Names choices = choicesOf(option);
  if (!choices.empty()) return "compadd -- " + join(choices, " ") + "; return ;;";
  const std::string name = valueName(option);
  if (name == "FILE") return "_files; return ;;";
  return name == "DIR" ? "_files -/; return ;;" : "return 1 ;;";
}

std::string offerCase(const std::string& path, const CLI::App& command) {
  std::string text = "    \"" + path + "\")\n      offers=(\n";
  for (const Offer& offer : offers(command)) text += "        " + quoted(offer) + "\n";
  return text + "      ) ;;\n";
}

}  // namespace

std::string zshCompletion(const CLI::App& root) {
  Names paths;
  std::string values, offered;
  forEachPlace(root, [&](const Names& names, const CLI::App& command) {
    const std::string path = pathOf(names);
    if (!names.empty()) paths.push_back(path);
    values += valueCases(path, command, zshValue);
    offered += offerCase(path, command);
  });
  return kZshBeginning + ("      " + join(paths, " | \\\n      ")) + ")\n" + kZshMiddle + values +
         kZshOffers + offered + kZshEnd;
}

}  // namespace ovinta::cli
