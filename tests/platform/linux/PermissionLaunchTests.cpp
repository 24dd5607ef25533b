// The permission to follow the user as one launch of an application after the other finds it.
#include <gmock/gmock.h>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "platform/linux/location/SystemLocationServices.h"
#include "platform/linux/location/geoclue/GeoClueStream.h"
#include "platform/portable/Portable.h"
#include "tests/platform/simulation/Sphere.h"
#include "tests/support/GeoClueDouble.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::platform::linuxos {
namespace {

using namespace std::chrono_literals;
using test::are;
using test::Step;
using test::Steps;
using Mood = test::GeoClueDouble::Mood;

const Step kChanged = test::posted(SDKNotification::locationAuthorizationChanged);
const Step kRefused = test::posted(SDKNotification::locationNotAuthorized);
const Steps kFetched{test::requested("GET", "m/v1/orders", test::kToken),
                     test::posted(SDKNotification::ordersUpdated, test::theOrders({7}))};

/// An application with an open order, whose settings stay from launch to launch.
class PermissionLaunchTest : public test::SDKFixture {
 protected:
  PermissionLaunchTest() {
    answer("POST", "m/v1/events", Answer::json(200, ""));
    answer("GET", "m/v1/orders", ordersAnswer({test::requiredOrder()}));
  }

  /// Ends the launch before; what happens in the next one until its order is there.
  Steps launch() {
    Ovinta::stopLocationUpdates();
    bus_ = std::make_shared<dbus::Bus>(daemon_.address(), time.mainQueue(), log);
    hub_ = std::make_shared<PositionHub>(
        std::make_shared<GeoClueProvider>(bus_, time.mainQueue(),
                                          GeoClueProvider::Options{.desktopID = "org.example.app"}),
        time.mainQueue(), KeptAccess(services.settings, PositionSource::geoclue));
    restartWith([this](Services& changed) {
      changed.notificationCenter = portable::makeNotificationCenter();
      changed.location = std::make_shared<SystemLocationServices>(
          hub_,
          std::make_shared<BeaconScanner>(bus_, time.mainQueue(), log, BeaconScanner::Options{}));
    });
    signIn();
    Ovinta::configure({});
    Ovinta::orders().fetch();
    return outcome({Step::posted, Step::requested});
  }

  void waitUntil(const std::function<bool()>& condition) {
    const auto progress = [&] {
      queues->runAll();
      http->deliverAll();
      return condition();
    };
    ASSERT_TRUE(time.waitUntil(progress, 30s));
  }

  /// What happens until GeoClue has been asked to start so many clients, and has answered.
  Steps answers(std::size_t starts) {
    waitUntil([&] { return geoclue_.service().count("Start") == starts; });
    bool isAnswered = false;
    dbus::Service geoclue(bus_, kGeoClueName);
    geoclue.getProperties("/", "none", [&](const auto&) { isAnswered = true; });
    waitUntil([&] { return isAnswered; });
    return outcome({Step::posted, Step::requested});
  }

  replay::PrivateBus daemon_;
  test::GeoClueDouble geoclue_{daemon_};
  std::shared_ptr<dbus::Bus> bus_;
  std::shared_ptr<PositionHub> hub_;
};

TEST_F(PermissionLaunchTest, IsToldWhenItIsAnotherThanAtTheLaunchBefore) {
  const Step granted = reportedPermission(7, "authorized_when_in_use");
  EXPECT_THAT(launch(), are(kChanged, kRefused, kFetched,
                            test::posted(SDKNotification::locationAuthorizationNotDetermined)));
  hub_->askPermission();
  EXPECT_THAT(answers(1), are(kChanged, granted));
  waitUntil([&] { return geoclue_.service().count("Start") == 3; });

  EXPECT_THAT(launch(), are(kChanged, kFetched)) << "as before";
  EXPECT_THAT(answers(5), are());
  geoclue_.setMood(Mood::disallowing);
  EXPECT_THAT(launch(), are(kChanged, kFetched));
  EXPECT_THAT(answers(7), are(kChanged, kRefused, reportedPermission(7, "denied")))
      << "withdrawn meanwhile";

  EXPECT_THAT(launch(), are(kChanged, kRefused, kFetched, kRefused));
  hub_->askPermission();
  EXPECT_THAT(answers(8), are()) << "withdrawn as before";
  geoclue_.setMood(Mood::willing);
  launch();
  hub_->askPermission();
  EXPECT_EQ(answers(9).back(), granted);
}

}  // namespace
}  // namespace ovinta::platform::linuxos
