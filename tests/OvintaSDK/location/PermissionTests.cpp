// Changes of the permission to follow the user: who hears of them.
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/OvintaSDK/location/LocationFixture.h"

namespace ovinta::test {
namespace {

class Permission : public LocationFixture {
 protected:
  /// What follows a change of the permission.
  Steps change(platform::AuthorizationStatus status, std::initializer_list<Step::Kind> kinds = {}) {
    happened();
    location->setAuthorizationStatus(status);
    drain();
    EXPECT_EQ(lastKnown(), std::to_string(status));
    return happened(kinds);
  }

  static std::optional<std::string> lastKnown() {
    return UserDefaultsKey::lastKnownAuthStatus.stringValue();
  }
};

TEST_F(Permission, IsReportedForEveryOpenOrder) {
  startTracking({7, 8});
  // A status that the service does not know is not reported.
  const std::pair<platform::AuthorizationStatus, const char*> changes[] = {
      {0, "not_determined"},         {1, "restricted"}, {2, "denied"}, {3, "authorized_always"},
      {4, "authorized_when_in_use"}, {5, nullptr},      {12, nullptr}};
  for (const auto& [status, permission] : changes) {
    Steps reports;
    for (const int id : {7, 8}) {
      if (permission) reports.push_back(reportedPermission(id, permission));
    }
    EXPECT_THAT(change(status, {Step::requested}), are(reports));
  }
}

TEST_F(Permission, IsNotReportedAgainAfterARestart) {
  UserDefaultsKey::lastKnownAuthStatus.set("4");
  startTracking();
  EXPECT_EQ(lastKnown(), "3");
  UserDefaultsKey::lastKnownAuthStatus.set("2");
  EXPECT_THAT(change(2),
              are(posted(SDKNotification::locationAuthorizationChanged),
                  posted(SDKNotification::locationNotAuthorized), logged(Line::notTracking)));
}

TEST_F(Permission, IsStoredEvenWhenThereIsNoOrderToReportItFor) {
  Library::process().makeLocationUpdater();
  EXPECT_EQ(lastKnown(), std::nullopt);
  EXPECT_THAT(outcome({Step::posted}), are(posted(SDKNotification::locationAuthorizationChanged)));
  EXPECT_EQ(lastKnown(), "3");
  EXPECT_EQ(timesLogged(Line::tracking), 0) << "nothing is tracked";
  fetchOrders({});
  location->setAuthorizationStatus(1);
  drain();
  EXPECT_EQ(lastKnown(), "1");
  EXPECT_EQ(eventCount(), 0u);
}

TEST_F(Permission, StartsTrackingOnceItIsGranted) {
  location->setAuthorizationStatus(0);
  startTracking();
  EXPECT_FALSE(location->isUpdating());
  location->setAuthorizationStatus(4);
  drain();
  EXPECT_TRUE(location->isUpdating());
  EXPECT_TRUE(location->isMonitoringSignificantChanges());
  EXPECT_EQ(location->desiredAccuracy(), platform::LocationAccuracy::best);
  EXPECT_EQ(timesLogged(Line::tracking), 1);

  location->setAuthorizationStatus(2);
  drain();
  EXPECT_TRUE(location->isUpdating()) << "the platform withholds positions by itself";
  Ovinta::stopLocationUpdates();
  location->setAuthorizationStatus(3);
  drain();
  EXPECT_FALSE(location->isUpdating()) << "tracking is not wanted any more";
}

}  // namespace
}  // namespace ovinta::test
