// The real portal over the real GeoClue, with a desktop played by the test that asks the user.
#include <unistd.h>

#include "platform/linux/location/portal/PortalProvider.h"
#include "replay/Rig.h"
#include "tests/platform/linux/PositionFixture.h"
#include "tests/support/Files.h"
#include "tests/support/ServiceDouble.h"

namespace ovinta::platform::linuxos {
namespace {

using test::ServiceDouble;
using testing::HasSubstr;

constexpr const char* kDaemon = "/usr/libexec/xdg-desktop-portal";
constexpr const char* kDesktop = "org.freedesktop.impl.portal.desktop.tests";

class PortalDaemonTest : public PositionTest {
 protected:
  void SetUp() override {
    if (access(kDaemon, X_OK) != 0) GTEST_SKIP() << "takes the package xdg-desktop-portal";
    auto rig = replay::Rig::start();
    if (!rig) GTEST_SKIP() << rig.error();
    rig_ = *std::move(rig);
    desktop_.addObject("/org/freedesktop/portal/desktop", "org.freedesktop.impl.portal.Access");
    test::writeFile(folder_.path() / "tests.portal",
                    "[portal]\nUseIn=tests\nDBusName=" + std::string(kDesktop) +
                        "\nInterfaces=org.freedesktop.impl.portal.Access\n");
    startPortal();
  }

  std::vector<std::string> variables() {
    return {rig_->variable(), "DBUS_SESSION_BUS_ADDRESS=" + daemon_.address(),
            "XDG_CURRENT_DESKTOP=tests", "XDG_DESKTOP_PORTAL_DIR=" + folder_.path().string(),
            "XDG_DATA_HOME=" + folder_.path().string()};
  }

  void startPortal() {
    portal_.emplace(std::vector<std::string>{kDaemon}, variables());
    bool isThere = false;
    dbus::Service service(bus_, kPortalName);
    service.onPresence(false, [&](bool isPresent) { isThere = isPresent; });
    waitUntil([&] { return isThere; });
  }

  void sendUntilTold(double metresNorth) {
    PositionTest::sendUntilTold(metresNorth, [this](Coordinate place) {
      rig_->send({.coordinate = place, .horizontalAccuracy = 8, .speed = 10});
    });
  }

  /// What runs a command where the portal takes it for an application in a sandbox.
  std::vector<std::string> sandbox() {
    const auto mark = folder_.path() / "mark";
    test::writeFile(mark, "[Application]\nname=org.example.app\n[Instance]\ninstance-id=1\n");
    std::vector<std::string> words{"bwrap", "--ro-bind", mark.string(), "/.flatpak-info"};
    for (const auto& entry : std::filesystem::directory_iterator("/")) {
      if (!entry.is_directory()) continue;
      words.insert(words.end(), {"--dev-bind", entry.path().string(), entry.path().string()});
    }
    return words;
  }

  std::unique_ptr<replay::Rig> rig_;
  /// What the user answers.
  std::atomic<std::uint32_t> response_ = 0;
  ServiceDouble desktop_{daemon_, kDesktop, {{"AccessDialog", "osssssa{sv}"}}, [this](const auto&) {
                           return dbus::arguments(response_.load(), dbus::Properties());
                         }};
  std::optional<replay::ChildProcess> portal_;
  PortalProvider provider_{bus_, time_.mainQueue()};
};

TEST_F(PortalDaemonTest, ATripIsFollowedWithAnotherFilterAndAcrossARestart) {
  const auto stream = open(provider_, 0);
  waitForAccess(PositionAccess::granted);
  for (const double metres : {1000, 700}) sendUntilTold(metres);
  expectOfNow();
  stream->setDistanceFilter(50);
  waitForAccess(PositionAccess::granted);
  sendUntilTold(400);
  portal_.reset();
  waitForAccess(PositionAccess::absent);
  startPortal();
  waitForAccess(PositionAccess::granted);
  sendUntilTold(100);
}

TEST_F(PortalDaemonTest, InASandboxTheUserIsAskedAndTheAnswerCounts) {
  auto words = sandbox();
  words.emplace_back("true");
  if (replay::ChildProcess(words).wait() != 0) GTEST_SKIP() << "takes the package bubblewrap";
  words.back() = OVINTA_COMMAND;
  words.insert(words.end(), {"doctor", "--json"});
  for (const char* const expected : {"granted", "refused"}) {
    replay::ChildProcess doctor(words, variables(), replay::ChildOutput::firstLine);
    EXPECT_THAT(doctor.firstLine(), HasSubstr(R"("detail":"the location portal")"));
    EXPECT_THAT(doctor.firstLine(), HasSubstr("\"detail\":\"" + std::string(expected) + '"'));
    response_ = 1;
  }
  EXPECT_EQ(desktop_.count("AccessDialog"), 2U);
}

}  // namespace
}  // namespace ovinta::platform::linuxos
