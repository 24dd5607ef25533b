// Notifications about sites nearby: what is armed, in place of what, and what is refused.
#include <gmock/gmock.h>

#include "OvintaSDK/core/Ovinta.h"
#include "tests/support/SDKFixture.h"

namespace ovinta {
namespace {

using platform::Dictionary;
using platform::UserNotificationRequest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr platform::Coordinate kCenter{.latitude = 40.7, .longitude = -74};
constexpr std::string_view kLookUp =
    "m/v1/sites?latitude=40.7&longitude=-74.0&radius=500.0&page=1&per=5";

SitePtr site(std::int64_t id, std::string latitude = "40.7") {
  return std::make_shared<const Site>(
      Site{.id = id,
           .geofence =
               Geofence{.latitude = std::move(latitude), .longitude = "-74", .radiusMeters = 150}});
}

SiteList sites(std::int64_t count) {
  SiteList list;
  for (std::int64_t id = 1; id <= count; ++id) list.push_back(site(id));
  return list;
}

class Notify : public test::SDKFixture {
 protected:
  /// Arms the sites; the message of the error, or "none".
  std::string arm(const SiteList& list, const std::optional<Dictionary>& data = {}) {
    std::string message = "no answer";
    notify.createForSites(list, {"Near", "You are near", data}, keep(message));
    drain();
    return message;
  }

  static ErrorCallback keep(std::string& message) {
    return [&message](const ErrorPtr& error) {
      EXPECT_EQ(message, "no answer") << "called twice";
      message = error ? error->localizedDescription() : "none";
    };
  }

  /// Arms the sites that the service finds; what the callback receives, call by call.
  std::vector<std::string> armRegion(const std::function<void()>& beforeTheAnswer = [] {}) {
    std::vector<std::string> calls;
    notify.createForSitesInRegion(
        {.center = kCenter, .radius = 500, .identifier = "unused"}, {"Near", "You are near"},
        [&](const std::optional<SiteList>& found, const ErrorPtr& error) {
          calls.push_back((found ? std::to_string(found->size()) + " sites" : "no sites") + ", " +
                          (error ? error->localizedDescription() : "no error"));
        });
    beforeTheAnswer();
    drain();
    return calls;
  }

  void answerSites(int count) {
    platform::List records;
    for (int id = 1; id <= count; ++id) {
      records.emplace_back(Dictionary{
          {"id", id},
          {"geofence",
           Dictionary{{"latitude", "40.7"}, {"longitude", "-74"}, {"radius_meters", 150}}}});
    }
    answer("GET", kLookUp, Answer::json(200, test::sitesText(std::move(records), 1, 1)));
  }

  std::vector<std::string> pending() const {
    std::vector<std::string> identifiers;
    for (const auto& request : userNotifications->pending()) {
      identifiers.push_back(request.identifier);
    }
    return identifiers;
  }

  NotifyManager& notify = Ovinta::notify();
};

TEST_F(Notify, ArmsOneEntryForEachSite) {
  EXPECT_EQ(arm({site(42)}, Dictionary{{"message_source", "x"}, {"more", 1}}), "none");
  const UserNotificationRequest expected{
      .identifier = "ovinta.notify 42",
      .content = {.title = "Near",
                  .body = "You are near",
                  .sound = platform::NotificationSound::defaultSound,
                  .userInfo = {{"message_source", "ovinta.notify"}, {"more", 1}}},
      .trigger = {.region = {.center = kCenter,
                             .radius = 150,
                             .identifier = "ovinta.notify 42",
                             .notifyOnEntry = true,
                             .notifyOnExit = false},
                  .repeats = false}};
  EXPECT_THAT(userNotifications->pending(), ElementsAre(expected));

  const SitePtr bare = std::make_shared<const Site>(Site{.id = 9});
  EXPECT_EQ(arm({bare, site(1, ""), site(2, "40.7 N"), site(3)}), "none");
  EXPECT_THAT(pending(), ElementsAre("ovinta.notify 3"));
  EXPECT_EQ(userNotifications->pending()[0].content.userInfo,
            (Dictionary{{"message_source", "ovinta.notify"}}));
}

TEST_F(Notify, ReplacesItsOwnRequestsAlone) {
  UserNotificationRequest foreign{.identifier = "ovinta.notify", .content = {}, .trigger = {}};
  userNotifications->add(foreign, {});
  foreign.identifier = "app";
  foreign.content.userInfo = {{"message_source", 1}};
  userNotifications->add(foreign, {});
  EXPECT_EQ(arm({site(7), site(8)}), "none");
  EXPECT_EQ(arm(sites(6)), "Site limit exceeded");
  EXPECT_THAT(pending(), ElementsAre("ovinta.notify", "app", "ovinta.notify 7", "ovinta.notify 8"));
  EXPECT_EQ(arm({site(9)}), "none");
  EXPECT_THAT(pending(), ElementsAre("ovinta.notify", "app", "ovinta.notify 9"));
  EXPECT_EQ(arm({}), "none");
  EXPECT_THAT(pending(), ElementsAre("ovinta.notify", "app"));
  EXPECT_EQ(arm(sites(5)), "none");

  location->setLocationServicesEnabled(false);
  for (int i = 0; i < 2; ++i) {
    std::string message = "no answer";
    notify.clear(keep(message));
    drain();
    EXPECT_EQ(message, "none") << "no permission is needed";
    EXPECT_EQ(pending().size(), 2u);
  }
}

TEST_F(Notify, NeedsLocationServicesAndPermission) {
  const std::tuple<bool, platform::AuthorizationStatus, bool> rows[] = {
      {true, 0, false}, {true, 1, false}, {true, 2, false}, {true, 3, true},
      {true, 4, true},  {true, 5, false}, {false, 4, false}};
  answerSites(1);
  std::size_t lookUps = 0;
  for (const auto& [enabled, status, allowed] : rows) {
    SCOPED_TRACE(status);
    location->setLocationServicesEnabled(enabled);
    location->setAuthorizationStatus(status);
    const char* const kRefusal = "Location permission is missing";
    EXPECT_EQ(arm(sites(6)), allowed ? "Site limit exceeded" : kRefusal) << "asked first";
    EXPECT_THAT(armRegion(),
                ElementsAre(allowed ? "1 sites, no error" : std::string("no sites, ") + kRefusal));
    EXPECT_EQ(requests().size(), lookUps += allowed ? 1 : 0);
  }
  const NotifyManagerError error(NotifyManagerErrorType::reachedTheMaxNumberOfSites);
  EXPECT_EQ(error.title(), "Error with Notify Manager");
  EXPECT_EQ(error.detail(), "Too many sites. No more than allowed.");
}

TEST_F(Notify, ArmsTheSitesOfARegion) {
  answerSites(2);
  EXPECT_THAT(armRegion(), ElementsAre("2 sites, no error"));
  EXPECT_THAT(pending(), ElementsAre("ovinta.notify 1", "ovinta.notify 2"));
  EXPECT_EQ(Ovinta::sites().all()->size(), 2u);
  answer("GET", kLookUp, Answer::json(401, ""));
  EXPECT_THAT(armRegion(), ElementsAre("no sites, Not authorized"));
  EXPECT_EQ(pending().size(), 2u);

  answerSites(6);
  EXPECT_THAT(armRegion(), ElementsAre("no sites, Site limit exceeded", "6 sites, no error"));
  answerSites(1);
  EXPECT_THAT(armRegion([this] { location->setAuthorizationStatus(2); }),
              ElementsAre("no sites, Location permission is missing", "1 sites, no error"));
  EXPECT_EQ(pending().size(), 2u);
}

TEST_F(Notify, LogsWhatTheCentreRefuses) {
  userNotifications->refuseAdds(platform::UserNotificationError{"full"});
  EXPECT_EQ(arm({site(42)}), "none");
  EXPECT_THAT(logLines(),
              ElementsAre("Failed to add notification request <ovinta.notify 42: 150.0 m around "
                          "40.7, -74.0>, with error: full"));
}

TEST_F(Notify, FiresOnceWhenTheDeviceComesNear) {
  location->onPosition([this](const auto& at) { userNotifications->deviceMoved(at.coordinate); });
  arm({site(42)});
  for (const double latitude : {40.71, 40.7011, 40.71, 40.7, 40.71}) {
    location->deliver({.coordinate = {.latitude = latitude, .longitude = -74}});
    drain();
  }
  ASSERT_EQ(userNotifications->fired().size(), 1u);
  EXPECT_TRUE(notify.isOvintaNotifyUserInfo(userNotifications->fired()[0].content.userInfo));
  EXPECT_THAT(pending(), IsEmpty());
  for (const Dictionary& other : {Dictionary{}, Dictionary{{"message_source", 1}},
                                  Dictionary{{"message_source", "ovinta.notify "}},
                                  Dictionary{{"source", "ovinta.notify"}}}) {
    EXPECT_FALSE(notify.isOvintaNotifyUserInfo(other));
  }
}

}  // namespace
}  // namespace ovinta
