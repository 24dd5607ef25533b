#include "cli/manual/ManPage.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>

#include "cli/client/ExitCode.h"
#include "cli/manual/CommandTree.h"

namespace ovinta::cli {
namespace {

constexpr const char* kOwnOptions = "Options";

/// The text with what roff would take for its own made plain.
std::string plain(const std::string& text) {
  std::string escaped;
  for (const char character : text) {
    if (character == '\\') {
      escaped += "\\e";
    } else if (character == '-') {
      escaped += "\\-";
    } else {
      escaped += character;
    }
  }
  return text.starts_with('.') || text.starts_with('\'') ? "\\&" + escaped : escaped;
}

std::string bold(const std::string& text) { return "\\fB" + plain(text) + "\\fR"; }
std::string italic(const std::string& text) { return "\\fI" + plain(text) + "\\fR"; }

std::string entry(const std::string& heading, const std::string& text) {
  return ".TP\n" + heading + "\n" + text + "\n";
}

std::string sentence(const std::string& text) { return text.ends_with('.') ? text : text + "."; }

std::string heading(const CLI::Option& option) {
  if (option.get_positional()) return italic(option.get_name(true));
  std::vector<std::string> names;
  for (const std::string& name : namesOf(option)) names.push_back(bold(name));
  return join(names, ", ") + (takesValue(option) ? " " + italic(valueName(option)) : "");
}

/// A sentence about other options; empty for none.
std::string others(const std::string& beginning, const std::set<CLI::Option*>& options) {
  std::vector<std::string> names;
  names.reserve(options.size());
  for (const CLI::Option* option : options) names.push_back(bold(option->get_name()));
  std::ranges::sort(names);
  return names.empty() ? "" : beginning + join(names, ", ") + ".";
}

std::string description(const CLI::Option& option) {
  std::string text = plain(sentence(option.get_description()));
  if (option.get_required()) text += " Required.";
  const auto choices = choicesOf(option);
  if (!choices.empty()) text += " One of: " + plain(join(choices, ", ")) + ".";
  text += others(" Only with ", option.get_needs());
  text += others(" Not with ", option.get_excludes());
  if (!option.get_default_str().empty()) text += " Default: " + plain(option.get_default_str());
  return text;
}

/// A positional in the line of usage.
std::string placeOf(const CLI::Option& option) {
  const std::string name =
      option.get_name(true) + (option.get_items_expected_max() > 1 ? "..." : "");
  return option.get_required() ? name : "[" + name + "]";
}

/// A sentence about options of which one must be given; empty for none.
std::string choice(const CLI::App& command) {
  std::string text;
  for (const CLI::App* group : optionGroups(command)) {
    if (group->get_require_option_min() != 1) continue;
    std::vector<std::string> names;
    for (const CLI::Option* option : group->get_options()) {
      if (option != group->get_help_ptr()) names.push_back(bold(option->get_name()));
    }
    text += " Takes exactly one of " + join(names, ", ") + ".";
  }
  return text;
}

/// Groups of options that several commands share; each stands in the page once.
using SharedOptions = std::map<std::string, std::map<std::string, std::string>>;

std::string section(const std::vector<std::string>& names, const CLI::App& command,
                    SharedOptions& shared) {
  std::string usage = join(names, " ");
  std::string options;
  for (const CLI::Option* option : allOptions(command)) {
    if (option->get_positional()) usage += " " + placeOf(*option);
    const std::string text = entry(heading(*option), description(*option));
    if (option == command.get_help_ptr()) continue;
    if (option->get_group() == kOwnOptions) {
      options += text;
    } else {
      shared[option->get_group()].emplace(heading(*option), text);
    }
  }
  return ".SS \"ovinta " + plain(usage) + "\"\n" + plain(sentence(command.get_description())) +
         choice(command) + "\n" + options;
}

std::string upperCase(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::toupper(c); });
  return text;
}

std::string sharedSections(const SharedOptions& shared) {
  std::string text;
  for (const auto& [group, options] : shared) {
    text += ".SH " + upperCase(group) + "\n";
    for (const auto& [name, option] : options) text += option;
  }
  return text;
}

std::string environment(const CLI::App& root) {
  std::map<std::string, std::string> variables;
  forEachCommand(root, [&](const auto& /*names*/, const CLI::App& command) {
    for (const CLI::Option* option : allOptions(command)) {
      if (option->get_envname().empty()) continue;
      variables[option->get_envname()] =
          entry(bold(option->get_envname()), "Takes the place of " + heading(*option) + ".");
    }
  });
  std::string text = ".SH ENVIRONMENT\n";
  for (const auto& [name, variable] : variables) text += variable;
  return text;
}

std::string exitStatus() {
  std::string text = ".SH EXIT STATUS\n";
  for (const auto& [code, meaning] : kExitCodes) {
    text += entry(bold(std::to_string(static_cast<int>(code))), plain(std::string(meaning)));
  }
  return text + entry(bold(std::string(kSignalHeading)), plain(std::string(kSignalMeaning)));
}

}  // namespace

std::string manPage(const CLI::App& root) {
  std::string commands = ".SH COMMANDS\n";
  SharedOptions shared;
  forEachCommand(root, [&](const auto& names, const CLI::App& command) {
    commands += section(names, command, shared);
  });
  return ".TH OVINTA 1 \"\" OvintaSDK \"User Commands\"\n.SH NAME\novinta \\- " +
         plain(root.get_description()) +
         "\n.SH SYNOPSIS\n.B ovinta\n.I command\n.RI [ option \" ...]\"\n" + commands +
         sharedSections(shared) + environment(root) + exitStatus();
}

}  // namespace ovinta::cli
