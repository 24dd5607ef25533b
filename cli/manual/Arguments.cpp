#include "cli/manual/Arguments.h"

#include <algorithm>
#include <cstddef>

#include "cli/client/ClientOptions.h"
#include "cli/manual/CommandTree.h"

namespace ovinta::cli {
namespace {

using Arguments = std::vector<std::string>;

/// How many arguments the option takes up that begins there: two where its value stands apart.
std::size_t length(const CLI::Option& option, const Arguments& arguments, std::size_t at) {
  const bool standsApart = takesValue(option) && arguments[at].find('=') == std::string::npos;
  return standsApart && at + 1 < arguments.size() ? 2 : 1;
}

const CLI::Option* findCommon(const CLI::App& group, const std::string& name) {
  for (const CLI::Option* option : commonOptions(group)) {
    if (option->check_name(name)) return option;
  }
  return nullptr;
}

void append(Arguments& list, const Arguments& arguments, std::size_t begin, std::size_t count) {
  const auto first = arguments.begin() + static_cast<std::ptrdiff_t>(begin);
  list.insert(list.end(), first, first + static_cast<std::ptrdiff_t>(count));
}

/// The words with which the command that they name shows its help. Where they name none they are
/// left as they are, for the parser to refuse.
Arguments asHelp(const CLI::App& root, Arguments words) {
  const CLI::App* command = &root;
  for (const std::string& word : words) {
    if (visibleCommands(*command).empty()) break;
    const CLI::App* child = findCommand(*command, word);
    if (!child) return words;
    command = child;
  }
  words.emplace_back("--help");
  return words;
}

}  // namespace

bool isOption(const std::string& argument) {
  return argument.size() > 1 && argument.starts_with('-');
}

std::string optionName(const std::string& argument) {
  return argument.substr(0, argument.starts_with("--") ? argument.find('=') : 2);
}

Arguments inOrder(const CLI::App& root, const Arguments& arguments) {
  Arguments ordered, moved;
  const CLI::App* command = &root;
  std::size_t i = 0;
  while (i < arguments.size() && !visibleCommands(*command).empty()) {
    if (!isOption(arguments[i])) {
      const CLI::App* child = findCommand(*command, arguments[i]);
      if (!child) break;
      ordered.push_back(arguments[i++]);
      command = child;
      continue;
    }
    const std::string name = optionName(arguments[i]);
    const CLI::Option* own = command->get_option_no_throw(name);
    const CLI::Option* option = own ? own : findCommon(*command, name);
    // A common one is for the command that is named last.
    const bool stays = own && own->get_group() != kCommonOptions;
    if (!option) break;
    const std::size_t count = length(*option, arguments, i);
    append(stays ? ordered : moved, arguments, i, count);
    i += count;
  }
  if (ordered == Arguments{kHelpCommand}) {
    const Arguments words(arguments.begin() + static_cast<std::ptrdiff_t>(i), arguments.end());
    if (std::ranges::none_of(words, isOption)) return asHelp(root, words);
  }
  if (command->get_require_subcommand_min() == 0) append(ordered, moved, 0, moved.size());
  append(ordered, arguments, i, arguments.size() - i);
  return ordered;
}

}  // namespace ovinta::cli
