// Changes of the permission to follow the user: who hears of them.
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/OvintaSDK/location/LocationFixture.h"

namespace ovinta::test {
namespace {

constexpr std::string_view kStarting = "Starting LocationUpdater";

class Permission : public LocationFixture {
 protected:
  /// What follows a change of the permission.
  std::string change(platform::AuthorizationStatus status,
                     std::initializer_list<std::string_view> firstWords = {}) {
    happened();
    location->setAuthorizationStatus(status);
    drain();
    EXPECT_EQ(lastKnown(), std::to_string(status));
    return happened(firstWords);
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
    std::string reports;
    for (const char* id : {"7", "8"}) {
      if (!permission) continue;
      reports += std::string("\nPOST m/v1/events as customer-token {\"order_id\":") + id +
                 R"(,"event_type":"permission_update","location_permission":")" + permission +
                 "\"}";
    }
    EXPECT_EQ(change(status, {"POST"}), reports);
  }
}

TEST_F(Permission, IsNotReportedAgainAfterARestart) {
  UserDefaultsKey::lastKnownAuthStatus.set("4");
  startTracking();
  EXPECT_EQ(lastKnown(), "3");
  UserDefaultsKey::lastKnownAuthStatus.set("2");
  EXPECT_EQ(change(2), R"(
posted locationAuthorizationChanged
posted locationNotAuthorized
log Inadequate location authorization to continue)");
}

TEST_F(Permission, IsStoredEvenWhenThereIsNoOrderToReportItFor) {
  Library::process().makeLocationUpdater();
  EXPECT_EQ(lastKnown(), std::nullopt);
  EXPECT_EQ(outcome({"posted"}), "\nposted locationAuthorizationChanged");
  EXPECT_EQ(lastKnown(), "3");
  EXPECT_EQ(logged(kStarting), 0) << "nothing is tracked";
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
  EXPECT_EQ(logged(kStarting), 1);

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
