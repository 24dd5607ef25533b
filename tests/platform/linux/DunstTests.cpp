#include "replay/ChildProcess.h"
#include "tests/platform/linux/UserNotificationFixture.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr const char* kPath = "/org/freedesktop/Notifications";
constexpr const char* kDunst = "org.dunstproject.cmd0";
constexpr const char* kServer = "/usr/bin/Xvfb";
constexpr const char* kProgram = "/usr/bin/dunst";

/// A real notification service on a screen that nobody sees.
class DunstTest : public UserNotificationTest {
 protected:
  void SetUp() override {
    for (const char* needed : {kServer, kProgram}) {
      if (!std::filesystem::exists(needed)) GTEST_SKIP() << "Skipped: there is no " << needed;
    }
    desktop_.vanish();
    screen_.emplace(std::vector<std::string>{kServer, "-displayfd", "1", "-nolisten", "tcp"},
                    std::vector<std::string>{}, replay::ChildOutput::firstLine);
    dunst_.emplace(std::vector<std::string>{kProgram},
                   std::vector<std::string>{"DISPLAY=:" + screen_->firstLine(),
                                            "DBUS_SESSION_BUS_ADDRESS=" + daemon_.address(),
                                            "XDG_CONFIG_HOME=" + folder_.path().string()});
    bool isThere = false;
    service_.onPresence(false, [&](bool isPresent) { isThere = isPresent; });
    waitUntil([&] { return isThere; });
  }

  std::optional<replay::ChildProcess> screen_, dunst_;
  dbus::Service service_{makeBus(), "org.freedesktop.Notifications"};
};

TEST_F(DunstTest, ShowsTheNotificationAndTellsOfTheClick) {
  arm({requestFor("one")});
  enter();
  std::uint32_t displayed = 0;
  waitUntil([&] {
    service_.getProperties(kPath, kDunst, [&](const dbus::Properties& properties) {
      displayed = dbus::read<std::uint32_t>(properties, "displayedLength").value_or(0);
    });
    return displayed == 1;
  });
  EXPECT_TRUE(clicked_.empty());
  service_.call(kPath, kDunst, "NotificationAction", dbus::arguments(std::uint32_t{0}), {});
  waitForClick();
}

}  // namespace
}  // namespace ovinta::platform::linuxos
