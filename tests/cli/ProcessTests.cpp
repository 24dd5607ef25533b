#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/cli/Shell.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta {
namespace {

using test::shell;
using testing::HasSubstr;

TEST(Process, failsWhenItsOutputCannotBeWritten) {
  const test::TemporaryDirectory directory;
  for (const char* command : {"--help", "orders list --data-dir $data", "man"}) {
    const auto result =
        shell("data=" + directory.path().string() + "; $ovinta " + command + " > /dev/full");
    EXPECT_EQ(result.exitCode, 1) << command;
    EXPECT_THAT(result.output, HasSubstr("the output could not be written"));
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
serve; client orders create --site 42 --partner-id P --name Alex --token T | grep '^id'; end INT
serve --seed-file $home/after --app-token T
client orders fetch --token U 2>&1 | grep -o 401
client orders fetch --token T | wc -l; end TERM
)bash");
  EXPECT_EQ(result.output, "id: 1001\nexit 0\n401\n2\nexit 0\n");
}

TEST(Process, leavesNothingBehindWhenNobodyReadsTheDemonstration) {
  const test::TemporaryDirectory directory;
  const auto result = shell("export TMPDIR=" + directory.path().string() +
                            "; $ovinta demo --pace 0 | head -2 > /dev/null; echo ${PIPESTATUS[0]}");
  EXPECT_EQ(result.output, "141\n");
  EXPECT_TRUE(is_empty(directory.path()));
}

TEST(Process, leavesNothingBehindWhenTheDemonstrationIsInterrupted) {
  for (const auto& [signal, exitCode] : {std::pair("INT", 130), std::pair("TERM", 143)}) {
    const test::TemporaryDirectory directory;
    // The first step shows that everything is set up, and lasts.
    const auto result = shell("export TMPDIR=" + directory.path().string() +
                              "; exec 3< <(exec $ovinta demo --pace 3600); process=$!"
                              "; sed '/Start/q' <&3 >/dev/null"
                              "; ls -d $TMPDIR/ovinta-* | wc -l; kill -" +
                              signal + " $process; wait $process; echo \"exit $?\"");
    EXPECT_EQ(result.output, "1\nexit " + std::to_string(exitCode) + "\n");
    EXPECT_TRUE(is_empty(directory.path()));
  }
}

}  // namespace
}  // namespace ovinta
