#include "replay/ChildProcess.h"
#include "tests/platform/linux/UserNotificationFixture.h"

namespace ovinta::platform::linux {
namespace {

using History = std::vector<dbus::Properties>;

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

  void call(const char* method, const Glib::VariantContainerBase& arguments,
            dbus::Service::Completion completion = {}) {
    service_.call(kPath, kDunst, method, arguments, std::move(completion));
  }

  std::optional<replay::ChildProcess> screen_, dunst_;
  dbus::Service service_{makeBus(), "org.freedesktop.Notifications"};
};

TEST_F(DunstTest, ShowsTheNotificationAndTellsOfTheClick) {
  arm({requestFor("one")});
  EXPECT_THAT(enter(), testing::IsEmpty());
  std::uint32_t displayed = 0;
  waitUntil([&] {
    service_.getProperties(kPath, kDunst, [&](const dbus::Properties& properties) {
      displayed = dbus::read<std::uint32_t>(properties, "displayedLength").value_or(0);
    });
    return displayed == 1;
  });
  EXPECT_TRUE(clicked_.empty());
  call("NotificationAction", dbus::arguments(std::uint32_t{0}));
  waitForClick();

  // It lists what is closed.
  call("NotificationCloseLast", {});
  std::optional<History> history;
  waitUntil([&] {
    call("NotificationListHistory", {},
         [&](const dbus::Reply& reply) { history = dbus::read<History>(reply.values, 0); });
    return history && !history->empty();
  });
  const auto shown = history.value().at(0);
  EXPECT_EQ(dbus::read<Glib::ustring>(shown, "appname"), "org.example.app");
  EXPECT_EQ(dbus::read<Glib::ustring>(shown, "summary"), "Near");
  EXPECT_EQ(dbus::read<Glib::ustring>(shown, "body"), "5 &lt; 6 &amp; more");
}

}  // namespace
}  // namespace ovinta::platform::linux
