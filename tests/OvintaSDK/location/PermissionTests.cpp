// Changes of the permission to follow the user: who hears of them.
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/OvintaSDK/location/LocationFixture.h"

namespace ovinta {
namespace {

using platform::AuthorizationStatus;
using testing::ElementsAre;

constexpr std::string_view kRefusal = "Inadequate location authorization to continue";
constexpr std::string_view kStarting = "Starting LocationUpdater";

class Permission : public LocationFixture {
 protected:
  static std::string event(int id, const std::string& permission) {
    return R"({"data":{"order_id":)" + std::to_string(id) +
           R"(,"event_type":"permission_update","location_permission":")" + permission + "\"}}";
  }

  static std::optional<std::string> lastKnown() {
    return UserDefaultsKey::lastKnownAuthStatus.stringValue();
  }
};

struct Change {
  AuthorizationStatus from, to;
  /// Empty: nothing is sent.
  const char* permission = "";
};

void PrintTo(const Change& change, std::ostream* out) {
  *out << change.from << " to " << change.to;
}

class PermissionChange : public Permission, public testing::WithParamInterface<Change> {};

TEST_P(PermissionChange, IsReportedForEveryOpenOrder) {
  const Change& change = GetParam();
  location->setAuthorizationStatus(change.from);
  startTracking({7, 8});
  const auto refusals = logged(kRefusal);
  const auto starts = logged(kStarting);
  location->setAuthorizationStatus(change.to);
  drain();

  const bool isGranted = platform::isAuthorized(change.to);
  std::vector<std::string> names{"locationAuthorizationChanged"};
  if (!isGranted) names.emplace_back("locationNotAuthorized");
  EXPECT_EQ(postedNames(), names);
  EXPECT_EQ(logged(kRefusal) - refusals, !isGranted);
  EXPECT_EQ(logged(kStarting) - starts, isGranted);
  EXPECT_EQ(lastKnown(), std::to_string(change.to));
  const std::string permission = change.permission;
  std::vector<std::string> events;
  if (!permission.empty()) events = {event(7, permission), event(8, permission)};
  EXPECT_EQ(bodies("POST", kEvents), events);
}

INSTANTIATE_TEST_SUITE_P(, PermissionChange,
                         testing::Values(Change{3, 0, "not_determined"}, Change{3, 1, "restricted"},
                                         Change{3, 2, "denied"}, Change{4, 3, "authorized_always"},
                                         Change{2, 4, "authorized_when_in_use"}, Change{3, 5},
                                         Change{3, 12}));

TEST_F(Permission, IsNotReportedAgainAfterARestart) {
  UserDefaultsKey::lastKnownAuthStatus.set("4");
  startTracking();
  EXPECT_EQ(lastKnown(), "3");
  UserDefaultsKey::lastKnownAuthStatus.set("2");
  location->setAuthorizationStatus(2);
  drain();
  EXPECT_THAT(postedNames(), ElementsAre("locationAuthorizationChanged", "locationNotAuthorized"));
  EXPECT_EQ(eventCount(), 0u);
}

TEST_F(Permission, IsStoredEvenWhenThereIsNoOrderToReportItFor) {
  OvintaState::current().makeLocationUpdater();
  EXPECT_EQ(lastKnown(), std::nullopt);
  drain();
  EXPECT_THAT(postedNames(), ElementsAre("locationAuthorizationChanged"));
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
}  // namespace ovinta
