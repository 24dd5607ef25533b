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
