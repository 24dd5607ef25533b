// The programs of examples/event-loops: each takes the library through a real trip in the loop of
// another.
#include <gmock/gmock.h>

#include <algorithm>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "replay/ChildProcess.h"
#include "sandbox/Sandbox.h"
#include "tests/support/Command.h"
#include "tests/support/ScopedVariable.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

struct Loop {
  const char* program;
  /// Of `QT_NO_GLIB`; null for none.
  const char* noGLib = nullptr;
};

constexpr Loop kLoops[] = {{"poll"}, {"asio"}, {"gtk"}, {"qt"}, {"qt", "1"}, {"qt-glib"}};

/// The loops whose toolkit was there when the programs were built.
std::vector<Loop> builtLoops() {
  const std::string built = " " OVINTA_BUILT_LOOPS " ";
  std::vector<Loop> loops;
  std::ranges::copy_if(kLoops, std::back_inserter(loops), [&](const Loop& loop) {
    return built.find(" " + std::string(loop.program) + " ") != std::string::npos;
  });
  return loops;
}

class EventLoopTest : public testing::TestWithParam<Loop> {
 protected:
  void SetUp() override {
    ASSERT_EQ(service_.start(), std::nullopt);
    if (std::string(GetParam().program) != "gtk") return;
    screen_.emplace(std::vector<std::string>{"Xvfb", "-displayfd", "1", "-nolisten", "tcp"},
                    std::vector<std::string>{}, replay::ChildOutput::firstLine);
    setenv("DISPLAY", (":" + screen_->firstLine()).c_str(), 1);
  }

  const test::TemporaryDirectory directory_;
  const test::ScopedVariable dataHome_{"XDG_DATA_HOME", directory_.path().c_str()};
  const test::ScopedVariable noProxy_{"no_proxy", "*"};
  const test::ScopedVariable platform_{"QT_QPA_PLATFORM", "offscreen"};
  const test::ScopedVariable noGLib_{"QT_NO_GLIB", GetParam().noGLib};
  const test::ScopedVariable display_{"DISPLAY", nullptr};
  sandbox::Sandbox service_;
  std::optional<replay::ChildProcess> screen_;
};

TEST_P(EventLoopTest, BringsATimerAnAnswerAndAPositionToTheMainThread) {
  const auto result =
      test::runCommand({OVINTA_COMMAND, "replay", "--",
                        OVINTA_LOOP_PREFIX + std::string(GetParam().program), service_.baseURL()});
  if (result.output.find("a private mount, which is refused here") != std::string::npos) {
    GTEST_SKIP() << result.output;
  }
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_THAT(result.output,
              AllOf(HasSubstr("timer: on the main"), HasSubstr("answer: on the main"),
                    HasSubstr("position: on the main"), Not(HasSubstr("another thread"))));
}

INSTANTIATE_TEST_SUITE_P(, EventLoopTest, testing::ValuesIn(builtLoops()), [](const auto& loop) {
  const std::string name = std::regex_replace(loop.param.program, std::regex("-"), "_");
  return loop.param.noGLib ? name + "_without_glib" : name;
});

}  // namespace
}  // namespace ovinta
