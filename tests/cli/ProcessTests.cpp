#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/Shell.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta {
namespace {

using test::shell;

TEST(Process, failsWhenItsOutputCannotBeWritten) {
  const test::TemporaryDirectory directory;
  for (const char* command : {"--help", "orders list --data-dir $data", "man", "sandbox"}) {
    const auto result =
        shell("data=" + directory.path().string() + "; $ovinta " + command + " > /dev/full");
    EXPECT_EQ(result.exitCode, 1) << command;
    EXPECT_THAT(result.output, testing::HasSubstr("the output could not be written"));
  }
}

TEST(Process, servesUntilASignalAndKeepsWhatItKnew) {
  const test::TemporaryDirectory directory;
  const auto result = shell("home=" + directory.path().string() + R"bash(
serve() {
  exec 3< <(exec $ovinta sandbox --port 0 --snapshot-file $home/after "$@"); process=$!
  read -r service <&3
}
client() { $ovinta "$@" --data-dir $home/data --base-url $service; }
end() { kill -$1 $process; wait $process; echo "exit $?"; }
serve; client orders create --site 42 --partner-id P --name Alex --token T | grep ^Order; end INT
serve --seed-file $home/after --app-token T
client orders fetch --token U 2>&1 | grep -o 401
client orders fetch --token T | wc -l; end TERM
)bash");
  EXPECT_EQ(result.output, "Order           1001\nexit 0\n401\n2\nexit 0\n");
}

TEST(Process, leavesNothingBehindWhenNobodyReadsTheDemonstration) {
  const test::TemporaryDirectory directory;
  const auto result = shell("export TMPDIR=" + directory.path().string() +
                            "; $ovinta demo --pace 0 | head -2 > /dev/null; echo ${PIPESTATUS[0]}");
  EXPECT_EQ(result.output, "141\n");
  EXPECT_TRUE(is_empty(directory.path()));
}

TEST(Process, saysWhyATripHasNoBus) {
  const test::TemporaryDirectory directory;
  const std::string home = directory.path() / std::string(100, 'x');
  const std::pair<std::string, std::string> cases[] = {
      {"TMPDIR=" + home, "dbus-daemon does not start in " + home},
      // Runs nothing but what follows.
      {"PATH=" + home, "install the package dbus-daemon"},
  };
  for (const auto& [variable, sentence] : cases) {
    const auto result = shell("home=" + home + "; mkdir -p $home; ln -sf $(which setpriv) $home; " +
                              variable + " $ovinta replay -- true");
    EXPECT_EQ(result.exitCode, 1) << variable;
    EXPECT_THAT(result.output, testing::HasSubstr(sentence));
  }
}

/// Why there is no GeoClue to replay a trip to; empty when there is one.
std::string noReplay() { return shell("$ovinta replay -- true").output; }

TEST(Process, endsAsTheCommandDoesThatATripIsReplayedTo) {
  if (const auto reason = noReplay(); !reason.empty()) GTEST_SKIP() << reason;
  const std::pair<std::string, test::CommandResult> cases[] = {
      {"sh -c 'exit 7'", {7, ""}},
      {"sh -c 'kill -KILL $$'", {137, ""}},
      {"echo track -- --pace", {0, "track -- --pace\n"}},
      {"sh -c 'dbus-send --system --print-reply=literal --dest=org.freedesktop.GeoClue2 / "
       "org.freedesktop.DBus.Peer.Ping && echo there'",
       {0, "there\n"}},
  };
  for (const auto& [command, expected] : cases) {
    const auto result = shell("export DBUS_SYSTEM_BUS_ADDRESS=none; $ovinta replay -- " + command);
    EXPECT_EQ(result.exitCode, expected.exitCode) << command;
    EXPECT_EQ(result.output, expected.output) << command;
  }
}

TEST(Process, followsLiveTheTripThatIsReplayed) {
  if (const auto reason = noReplay(); !reason.empty()) GTEST_SKIP() << reason;
  const test::TemporaryDirectory directory;
  const auto result = shell("data=" + directory.path().string() + R"bash(
exec 3< <(exec $ovinta sandbox --port 0); process=$!
read -r service <&3
$ovinta orders create --site 42 --partner-id P --name Alex --token T --data-dir $data \
  --base-url $service > /dev/null
exec 4< <(exec timeout 60 $ovinta replay --pace 10 -- $ovinta track --live --json --data-dir $data)
following=$!
while ((${#metres[@]} < 2)) && read -r line <&4; do
  [[ $line =~ '"distance":'([0-9]+).*'"kind":"position"' ]] && metres[${BASH_REMATCH[1]}]=1
done
echo ${#metres[@]}; kill $following $process; wait $following
)bash");
  EXPECT_EQ(result.output, "2\n");
}

TEST(Process, leavesNothingBehindWhenItIsInterrupted) {
  std::vector<std::string> commands{"demo --pace 3600"};
  if (noReplay().empty()) {
    commands.insert(commands.end(), {"replay", "replay -- bash -c 'echo; sleep 3600'"});
  }
  for (const std::string& command : commands) {
    for (const auto& [signal, exitCode] : {std::pair("INT", 130), std::pair("TERM", 143)}) {
      const test::TemporaryDirectory directory;
      // The first line shows that everything is set up, and the rest lasts.
      const auto result = shell("export TMPDIR=" + directory.path().string() +
                                "; exec 3< <(exec $ovinta " + command +
                                "); process=$!; read -u 3; ls -d $TMPDIR/ovinta-* | head -1 | wc -l"
                                "; kill -" +
                                signal + " $process; wait $process; echo exit $?");
      EXPECT_EQ(result.output, "1\nexit " + std::to_string(exitCode) + "\n") << command;
      EXPECT_TRUE(is_empty(directory.path())) << command;
    }
  }
}

}  // namespace
}  // namespace ovinta
