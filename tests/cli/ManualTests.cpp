#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "tests/cli/Shell.h"

namespace ovinta {
namespace {

using test::shell;

/// The commands that the help of a command names, and those below them, e.g. "orders event".
std::vector<std::string> commandsBelow(const std::string& command) {
  std::vector<std::string> commands;
  bool isListed = false;
  for (const std::string& line : shell("$ovinta " + command + " --help").lines()) {
    if (isListed && !line.starts_with("  ")) break;
    if (isListed) {
      commands.push_back(command + (command.empty() ? "" : " ") +
                         line.substr(2, line.find(' ', 2) - 2));
    }
    isListed = isListed || line == "Subcommands:";
  }
  return commands;
}

TEST(Manual, namesEveryCommand) {
  const std::string page = shell("$ovinta man | sed 's/[\\]-/-/g'").output;
  const std::string completion = shell("$ovinta completion bash").output;
  std::vector<std::string> commands = commandsBelow("");
  for (std::size_t i = 0; i < commands.size(); ++i) {
    const auto below = commandsBelow(commands[i]);
    commands.insert(commands.end(), below.begin(), below.end());
    std::string path = "/" + commands[i];
    std::ranges::replace(path, ' ', '/');
    EXPECT_THAT(completion, testing::HasSubstr("\"" + path + "\") words="));
    EXPECT_THAT(page, testing::ContainsRegex(".SS \"ovinta " + commands[i] + "[\" ]"));
  }
  EXPECT_GE(commands.size(), 32U);
  // Shared options once, with the exit codes and the variables.
  for (const char* part : {".SH COMMON OPTIONS\n", "ovinta sites search [query]\"",
                           "notify arm site...", "Takes exactly one of ", "\\fB128+N",
                           "fB--trip\\fR \\fIFILE", "\\fB--data-dir\\fR \\fIDIR\\fR\n",
                           ".SH ENVIRONMENT\n", "\\fBOVINTA_PASSWORD\\fR\n", ".SH EXIT STATUS\n"}) {
    const std::size_t first = page.find(part);
    EXPECT_NE(first, std::string::npos) << part;
    EXPECT_EQ(page.find(part, first + 1), std::string::npos) << part;
  }
  EXPECT_EQ(
      shell("! command -v groff >&2 >/dev/null || $ovinta man | groff -man -Tutf8 -ww -z").output,
      "");
}

TEST(Manual, hasZshAndFishCompleteThem) {
  const std::string zsh =
      "compdef() { }; source <($ovinta completion zsh); _describe() { print -rl -- ${(P)2} }"
      "; compadd() { shift; print -rl -- $* }; _files() { print files $* }; compset() { }"
      "; PREFIX=${words[-1]} CURRENT=${#words}; _ovinta";
  const std::tuple<std::string, std::string, std::string> cases[] = {
      {"''", "orders:The customer", "ord"},
      {"orders ''", "fetch:Get all orders", "fet"},
      {"--json orders ''", "fetch:Get all orders", "fet"},
      {"orders fetch ''", "--only:Show these alone", "--on"},
      {"orders event 7 --customer-state ''", "arrived", "arr"},
      {"sandbox faults add GET /m/v1/orders ''", "empty_body:What it does", "empty"},
      {"config --data-dir ''", "files -/", ""},
      {"track --trip ''", "files\n", ""},
  };
  for (const auto& [words, offered, beginning] : cases) {
    EXPECT_THAT(shell("export ovinta; zsh -c 'words=(ovinta " +
                      std::regex_replace(words, std::regex("''"), "\"\"") + "); " + zsh + "'")
                    .output,
                testing::HasSubstr(offered))
        << words;
    const std::string line = "ovinta " + words.substr(0, words.size() - 2) + beginning;
    const std::string word = offered.substr(0, offered.find(':'));
    if (beginning.empty()) continue;
    EXPECT_THAT(shell("export ovinta; fish --no-config -c '"
                      "$ovinta completion fish | source; complete -C \"" +
                      line + "\"'")
                    .output,
                testing::StartsWith(word))
        << words;
  }
  EXPECT_EQ(shell("$ovinta completion zsh | zsh -n").output, "");
}

TEST(Manual, hasBashCompleteCommandsOptionsAndValues) {
  const std::pair<std::string, std::string> cases[] = {
      {"ord", "orders"},
      {"orders event 7 --customer-state ar", "arrived"},
      {"orders event 7 --customer-state = ar", "arrived"},
      {"orders event 7 --cust", "--customer-state"},
      {"orders create --name ''", ""},
      {"track --trip " OVINTA_TRIPS "/drive.", OVINTA_TRIPS "/drive.gpx"},
      {"config --data-dir " OVINTA_TRIPS "/../tri", OVINTA_TRIPS "/../trips"},
      {"completion ''", "bash"},
      {"--json orders fet", "fetch"},
      {"orders --js", "--json"},
  };
  for (const auto& [words, completions] : cases) {
    const std::string script =
        "source <($ovinta completion bash) && COMP_WORDS=(ovinta " + words +
        ") && COMP_CWORD=$((${#COMP_WORDS[@]} - 1)) && _ovinta && echo \"${COMPREPLY[*]}\"";
    const std::string output = shell(script).output;
    EXPECT_EQ(output.substr(0, output.find_first_of(" \n")), completions) << words;
  }
  EXPECT_EQ(shell("$ovinta completion bash | bash -n").exitCode, 0);
}

}  // namespace
}  // namespace ovinta
