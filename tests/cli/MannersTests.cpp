#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/manual/Suggestions.h"
#include "tests/cli/Shell.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta {
namespace {

using test::shell;

/// A line of shell, how it ends, and what it writes or a part of it.
struct Case {
  std::string line;
  int exitCode;
  std::string output;
};

TEST(Manners, suggestWhatMayHaveBeenMeant) {
  const Case cases[] = {
      {"ordres", 2, "Did you mean \"orders\"?\n"},
      {"orders ftch", 2, "Did you mean \"orders fetch\"?\n"},
      {"rate 1001 5", 2, "Did you mean \"orders rate\"?\n"},
      {"create", 2, "Did you mean \"customer create\" or \"orders create\"?\n"},
      {"customer login --email a@b.c --passwrod hunter2", 2, "Did you mean \"--password\"?\n"},
      {"orders event 1 --customer-state arived", 2, "Did you mean \"arrived\"?\n"},
      {"sandbox faults add GET /m/v1/orders emptybody", 2, "Did you mean \"empty_body\"?\n"},
      {"sandbox snapshto", 2, "Did you mean \"sandbox snapshot\"?\n"},
      {"help ordres", 2, "Did you mean \"orders\"?\n"},
      {"quux", 2, "not expected: quux\nRun with --help for more information.\n"},
  };
  for (const auto& [line, exitCode, output] : cases) {
    const auto result = shell("$ovinta " + line);
    EXPECT_EQ(result.exitCode, exitCode) << line;
    EXPECT_THAT(result.output, testing::HasSubstr(output)) << line;
    EXPECT_THAT(result.output, testing::Not(testing::HasSubstr("hunter2"))) << line;
  }
  const std::tuple<std::string, std::string, std::size_t> distances[] = {
      {"", "abc", 3}, {"abc", "abc", 0}, {"acb", "abc", 1}, {"abcd", "bcd", 1}, {"xbz", "abc", 2}};
  for (const auto& [one, other, distance] : distances) {
    EXPECT_EQ(cli::distanceBetween(one, other), distance) << one << other;
    EXPECT_EQ(cli::distanceBetween(other, one), distance) << one << other;
  }
}

TEST(Manners, haveABareGroupListItsCommandsAndHelpShowThatOfOthers) {
  const auto bare = shell("$ovinta --json orders 2>&1 > /dev/null");
  EXPECT_EQ(bare.exitCode, 2);
  EXPECT_THAT(bare.output, testing::StartsWith("A subcommand is required\n"));
  EXPECT_THAT(bare.output, testing::HasSubstr("\n  fetch   Get all orders"));
  const std::pair<std::string, std::string> same[] = {
      {"help", "--help"},
      {"help orders", "orders --help"},
      {"help sandbox faults add", "sandbox faults add --help"},
      {"--json help orders fetch", "orders fetch --help"}};
  for (const auto& [one, other] : same) {
    EXPECT_EQ(shell("$ovinta " + one).output, shell("$ovinta " + other).output) << one;
  }
  for (const char* line : {"completion", "man", "help", "merchant"}) {
    EXPECT_THAT(shell("$ovinta --help").output, testing::HasSubstr("\n  " + std::string(line)));
  }
}

TEST(Manners, takeCommonOptionsBeforeTheCommandToo) {
  const test::TemporaryDirectory directory;
  const std::string data = "--data-dir " + (directory.path() / "data").string();
  for (const std::string& line :
       {data + " --json orders list", "orders " + data + " --json list",
        "--json orders " + data + " list", "orders list --json " + data}) {
    const auto result = shell("$ovinta " + line);
    EXPECT_EQ(result.output, "[]\n") << line;
    EXPECT_EQ(result.exitCode, 0) << line;
  }
  const Case wrong[] = {{"--json man", 2, "not expected: --json"},
                        {"--passwrod hunter2 customer login", 2, "not expected: --passwrod"},
                        {"--token", 2, "A subcommand is required"}};
  for (const auto& [line, exitCode, output] : wrong) {
    const auto result = shell("$ovinta " + line);
    EXPECT_EQ(result.exitCode, exitCode) << line;
    EXPECT_THAT(result.output, testing::HasSubstr(output)) << line;
  }
}

TEST(Manners, useColoursOnATerminalOnlyAndNotWhereTheyAreUnwanted) {
  const test::TemporaryDirectory directory;
  const std::string command =
      "$ovinta customer show --data-dir " + (directory.path() / "data").string();
  const std::string onTerminal = "script -qec \"" + command + "\" /dev/null";
  const Case cases[] = {
      {"export TERM=xterm; unset NO_COLOR; " + onTerminal, 1, "\x1b[31mNo Customer:\x1b[0m The"},
      {"export TERM=xterm; unset NO_COLOR; " + command, 1, "No Customer: The"},
      {"export TERM=xterm NO_COLOR=1; " + onTerminal, 1, "No Customer: The"},
      {"export TERM=dumb; unset NO_COLOR; " + onTerminal, 1, "No Customer: The"},
  };
  for (const auto& [line, exitCode, output] : cases) {
    const auto result = shell(line);
    EXPECT_EQ(result.exitCode, exitCode) << line;
    EXPECT_THAT(result.output, testing::StartsWith(output)) << line;
  }
}

}  // namespace
}  // namespace ovinta
