// Notifications about sites nearby: what is armed, in place of what, and what is refused.
#include <gmock/gmock.h>

#include "OvintaSDK/core/facade/Ovinta.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using platform::Dictionary;
using platform::UserNotificationRequest;
using testing::ElementsAre;

constexpr platform::Coordinate kCenter{.latitude = 40.7, .longitude = -74};
const Step kDone = told();
const Step kTooMany = told(theError(Title::notify, Message::tooManySites));
const Step kNoPermission = told(theError(Title::notify, Message::noPermission));
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

class Notify : public SDKFixture {
 protected:
  /// Arms the sites; what the callback receives.
  Steps arm(const SiteList& list, const std::optional<Dictionary>& data = {}) {
    notify.createForSites(list, {"Near", "You are near", data}, tell());
    return outcome({Step::told});
  }

  /// Arms the sites that the service finds; what the callback receives, call by call.
  Steps armRegion(const std::function<void()>& beforeTheAnswer = [] {}) {
    notify.createForSitesInRegion({.center = kCenter, .radius = 500, .identifier = "unused"},
                                  {"Near", "You are near"}, tell());
    beforeTheAnswer();
    return outcome({Step::told});
  }

  void answerSites(int count) {
    platform::List records;
    for (int id = 1; id <= count; ++id) {
      records.emplace_back(Dictionary{
          {"id", id},
          {"geofence",
           Dictionary{{"latitude", "40.7"}, {"longitude", "-74"}, {"radius_meters", 150}}}});
    }
    answer("GET", kLookUp, Answer::json(200, sitesText(std::move(records), 1, 1)));
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
  EXPECT_THAT(arm({site(42)}, Dictionary{{"message_source", "x"}, {"more", 1}}), are(kDone));
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
  EXPECT_THAT(arm({bare, site(1, ""), nullptr, site(2, "40.7 N"), nullptr, site(3)}), are(kDone));
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
  EXPECT_THAT(arm({site(7), site(8)}), are(kDone));
  EXPECT_THAT(arm(sites(6)), are(kTooMany));
  EXPECT_THAT(pending(), ElementsAre("ovinta.notify", "app", "ovinta.notify 7", "ovinta.notify 8"));
  EXPECT_THAT(arm({site(9)}), are(kDone));
  EXPECT_THAT(pending(), ElementsAre("ovinta.notify", "app", "ovinta.notify 9"));
  EXPECT_THAT(arm({}), are(kDone));
  EXPECT_THAT(pending(), ElementsAre("ovinta.notify", "app"));
  EXPECT_THAT(arm(sites(5)), are(kDone));

  location->setLocationServicesEnabled(false);
  for (int i = 0; i < 2; ++i) {
    notify.clear(tell());
    EXPECT_THAT(outcome(), are(kDone)) << "no permission is needed";
    EXPECT_EQ(pending().size(), 2u);
  }
}

TEST_F(Notify, EachCallFindsWhatTheCallsBeforeItHaveArmed) {
  const auto armNext = [this](const auto&) { notify.createForSites({site(6)}, {}, tell()); };
  notify.createForSites(sites(5), {}, tell());
  notify.createForSites({site(7), site(8)}, {}, armNext);
  notify.createForSites({site(9)}, {}, nullptr);
  EXPECT_THAT(outcome(), are(kDone, kDone));
  EXPECT_THAT(pending(), ElementsAre("ovinta.notify 6"));
  notify.createForSites(sites(5), {}, {});
  NotifyManager().createForSites({site(6)}, {}, tell());
  EXPECT_THAT(outcome(), are(kDone));
  EXPECT_THAT(pending(), ElementsAre("ovinta.notify 6")) << "whichever manager it was";
  notify.createForSites(sites(5), {}, {});
  notify.clear(tell());
  EXPECT_THAT(outcome(), are(kDone));
  EXPECT_THAT(pending(), ElementsAre());
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
    EXPECT_THAT(arm(sites(6)), are(allowed ? kTooMany : kNoPermission)) << "asked first";
    EXPECT_THAT(armRegion(), are(allowed ? told(theSites({1})) : kNoPermission));
    EXPECT_EQ(requests().size(), lookUps += allowed ? 1 : 0);
  }
  const NotifyManagerError error(NotifyManagerErrorType::reachedTheMaxNumberOfSites);
  EXPECT_EQ(error.detail(), "Too many sites. No more than allowed.");
}

TEST_F(Notify, ArmsTheSitesOfARegion) {
  answerSites(2);
  EXPECT_THAT(armRegion(), are(told(theSites({1, 2}))));
  EXPECT_THAT(pending(), ElementsAre("ovinta.notify 1", "ovinta.notify 2"));
  EXPECT_EQ(Ovinta::sites().all()->size(), 2u);
  answer("GET", kLookUp, Answer::json(401, ""));
  EXPECT_THAT(armRegion(), are(told(theError(Title::getSitesForRegion, Message::notAuthorized))));
  EXPECT_EQ(pending().size(), 2u);

  answerSites(6);
  EXPECT_THAT(armRegion(), are(kTooMany, told(theSites({1, 2, 3, 4, 5, 6}))));
  answerSites(1);
  EXPECT_THAT(armRegion([this] { location->setAuthorizationStatus(2); }),
              are(kNoPermission, told(theSites({1}))));
  EXPECT_EQ(pending().size(), 2u);
}

TEST_F(Notify, LogsWhatTheCentreRefuses) {
  userNotifications->refuseAdds(platform::UserNotificationError{"full"});
  EXPECT_THAT(arm({site(42)}), are(kDone));
  EXPECT_THAT(logLines(),
              ElementsAre("Failed to add notification request <ovinta.notify 42: 150.0 m around "
                          "40.7, -74.0>, with error: full"));
}

TEST_F(Notify, KnowsItsOwn) {
  arm({site(42)});
  EXPECT_TRUE(notify.isOvintaNotifyUserInfo(userNotifications->pending()[0].content.userInfo));
  for (const Dictionary& other : {Dictionary{}, Dictionary{{"message_source", 1}},
                                  Dictionary{{"message_source", "ovinta.notify "}},
                                  Dictionary{{"source", "ovinta.notify"}}}) {
    EXPECT_FALSE(notify.isOvintaNotifyUserInfo(other));
  }
}

}  // namespace
}  // namespace ovinta::test
