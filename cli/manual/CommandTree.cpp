#include "cli/manual/CommandTree.h"

#include <algorithm>
#include <sstream>

#include "cli/client/ClientOptions.h"

namespace ovinta::cli {
namespace {

using Names = std::vector<std::string>;
using Visit = std::function<void(const Names&, const CLI::App&)>;

void walk(const CLI::App& parent, Names& names, const Visit& visit) {
  for (const CLI::App* command : visibleCommands(parent)) {
    names.push_back(command->get_name());
    visit(names, *command);
    walk(*command, names, visit);
    names.pop_back();
  }
}

}  // namespace

std::vector<const CLI::App*> visibleCommands(const CLI::App& command) {
  return command.get_subcommands([](const CLI::App* child) {
    return !child->get_name().empty() && !child->get_group().empty();
  });
}

const CLI::App* findCommand(const CLI::App& command, const std::string& name) {
  for (const CLI::App* child : visibleCommands(command)) {
    if (child->get_name() == name) return child;
  }
  return nullptr;
}

std::vector<const CLI::App*> optionGroups(const CLI::App& command) {
  return command.get_subcommands([](const CLI::App* child) { return child->get_name().empty(); });
}

std::vector<const CLI::Option*> allOptions(const CLI::App& command) {
  auto options = command.get_options();
  for (const CLI::App* group : optionGroups(command)) {
    for (const CLI::Option* option : group->get_options()) {
      if (option != group->get_help_ptr()) options.push_back(option);
    }
  }
  return options;
}

std::vector<const CLI::Option*> commonOptions(const CLI::App& group) {
  std::vector<const CLI::Option*> options;
  forEachCommand(group, [&options](const Names&, const CLI::App& command) {
    for (const CLI::Option* option : allOptions(command)) {
      const auto isSame = [option](const CLI::Option* other) {
        return other->get_name() == option->get_name();
      };
      const bool isCommon = option->get_group() == kCommonOptions;
      if (isCommon && std::ranges::none_of(options, isSame)) options.push_back(option);
    }
  });
  return options;
}

void forEachCommand(const CLI::App& root, const Visit& visit) {
  Names names;
  walk(root, names, visit);
}

void forEachPlace(const CLI::App& root, const Visit& visit) {
  visit({}, root);
  forEachCommand(root, visit);
}

std::vector<const CLI::Option*> offeredOptions(const CLI::App& command) {
  auto options = allOptions(command);
  for (const CLI::Option* option : commonOptions(command)) {
    if (!command.get_option_no_throw(option->get_name())) options.push_back(option);
  }
  return options;
}

std::vector<Offer> offers(const CLI::App& command) {
  std::vector<Offer> list;
  for (const CLI::App* child : visibleCommands(command)) {
    list.push_back({child->get_name(), child->get_description()});
  }
  for (const CLI::Option* option : offeredOptions(command)) {
    const Names words = option->get_positional() ? choicesOf(*option) : namesOf(*option);
    for (const std::string& word : words) list.push_back({word, option->get_description()});
  }
  return list;
}

Names namesOf(const CLI::Option& option) {
  Names names;
  for (const std::string& name : option.get_snames()) names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) names.push_back("--" + name);
  return names;
}

bool takesValue(const CLI::Option& option) { return option.get_items_expected_max() > 0; }

std::string valueName(const CLI::Option& option) {
  // The type comes first, and then what the checks say of themselves.
  const std::string type = option.get_type_name();
  if (type.ends_with(":FILE")) return "FILE";
  return type.substr(0, type.find(':'));
}

Names choicesOf(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const std::size_t start = type.find(":{");
  if (start == std::string::npos) return {};
  std::istringstream list(type.substr(start + 2, type.find('}') - start - 2));
  Names choices;
  for (std::string choice; std::getline(list, choice, ',');) choices.push_back(choice);
  return choices;
}

std::string join(const Names& texts, const std::string& separator) {
  std::string text;
  for (const std::string& part : texts) text += (text.empty() ? "" : separator) + part;
  return text;
}

}  // namespace ovinta::cli
