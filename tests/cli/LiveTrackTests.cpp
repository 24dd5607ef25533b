// What `ovinta track --live` makes of a GeoClue that the test plays.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>

#include "sandbox/Sandbox.h"
#include "tests/cli/Shell.h"
#include "tests/support/GeoClueDouble.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta {
namespace {

using Mood = test::GeoClueDouble::Mood;

constexpr const char* kRefused = "The command may not know the position. Allow \"ovinta\"";
constexpr const char* kWaiting = "Waiting for the permission...";
constexpr const char* kOff = "Location is switched off for all. Switch it on";
constexpr const char* kGranted = "granted while in use";

/// A customer with an open order, whom the command follows.
class LiveTrackTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(service_.start(), std::nullopt);
    const std::string data = " --data-dir " + directory_.path().string();
    const auto made = test::shell("$ovinta orders create --site 42 --partner-id P --name Alex" +
                                  data + " --base-url " + service_.baseURL());
    ASSERT_EQ(made.exitCode, 0) << made.output;
    command_ = "export DBUS_SYSTEM_BUS_ADDRESS=" + bus_.address() +
               " DBUS_SESSION_BUS_ADDRESS=none; exec timeout 60 " OVINTA_COMMAND " track --live" +
               data + " 2>&1";
  }

  void start() { output_ = popen(("echo $$; " + command_).c_str(), "r"); }

  std::string nextLine() {
    char line[1000] = "";
    return fgets(line, sizeof line, output_) ? line : "";
  }

  /// Reads on until the text has been written.
  void expectSays(const std::string& text) {
    std::string line = nextLine();
    while (!line.empty() && line.find(text) == std::string::npos) line = nextLine();
    EXPECT_THAT(line, testing::HasSubstr(text));
  }

  /// As a shell tells it, when the command has ended, which nobody keeps it from by reading no
  /// more.
  int exitCode() {
    while (!nextLine().empty()) {
    }
    const int status = pclose(output_);
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  }

  replay::PrivateBus bus_;
  test::GeoClueDouble geoclue_{bus_};
  sandbox::Sandbox service_;
  test::TemporaryDirectory directory_;
  std::string command_;
  FILE* output_ = nullptr;
};

TEST_F(LiveTrackTest, endsWithARefusalAtFirst) {
  geoclue_.setMood(Mood::withoutAgent);
  start();
  expectSays(kWaiting);
  // The answer would be kept.
  test::shell("spoil " + directory_.path().string());
  geoclue_.setMood(Mood::disallowing);
  expectSays("refused");
  expectSays(std::string("No Permission: ") + kRefused);
  expectSays("does not keep the settings");
  EXPECT_EQ(exitCode(), 1);
}

TEST_F(LiveTrackTest, goesByTheAnswersOfItsOwnRun) {
  geoclue_.setMood(Mood::disallowing);
  start();
  EXPECT_EQ(exitCode(), 1);

  geoclue_.setMood(Mood::withoutAgent);
  start();
  const pid_t process = std::stoi(nextLine());
  expectSays(kWaiting);
  geoclue_.setMood(Mood::willing);
  expectSays(kGranted);
  kill(process, SIGINT);
  EXPECT_EQ(exitCode(), 130);

  geoclue_.setMood(Mood::disallowing);
  start();
  expectSays(kGranted);
  expectSays(std::string("No Permission: ") + kRefused);
  EXPECT_EQ(exitCode(), 1);
}

TEST_F(LiveTrackTest, waitsForAPermissionThatWasThereBefore) {
  start();
  const pid_t process = std::stoi(nextLine());
  expectSays(kGranted);
  geoclue_.switchLocation(false);
  expectSays(kOff);
  geoclue_.switchLocation(true);
  expectSays(kGranted);

  geoclue_.vanish();
  expectSays(kWaiting);
  geoclue_.setMood(Mood::disallowing);
  geoclue_.service().appear();
  expectSays(kRefused);
  geoclue_.vanish();
  geoclue_.setMood(Mood::willing);
  geoclue_.service().appear();
  expectSays(kGranted);
  kill(process, SIGINT);
  expectSays("Requests that failed: 0");
  EXPECT_EQ(exitCode(), 130);
}

}  // namespace
}  // namespace ovinta
