// Looking sites up: what is asked, what is gathered, and what is reported.
#include <gmock/gmock.h>

#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "tests/OvintaSDK/Wording.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

class Sites : public SDKFixture {
 protected:
  void answerPage(const std::string& query, const std::vector<int>& ids, int current, int count) {
    platform::List records;
    for (const int id : ids) records.emplace_back(platform::Dictionary{{"id", id}});
    answer("GET", "m/v1/sites?" + query,
           Answer::json(200, sitesText(std::move(records), current, count)));
  }

  const platform::CircularRegion region{
      .center = {.latitude = 40.7, .longitude = -74}, .radius = 500, .identifier = "unused"};
  SitesManager& sites = Ovinta::sites();
};

TEST_F(Sites, GathersThePagesOfAnySearch) {
  answerPage("page=2", {4, 5}, 2, 2);
  sites.fetch(std::nullopt, 2, tell());
  EXPECT_THAT(outcome(),
              are(requested("GET", "m/v1/sites?page=2"), told(theSites({4, 5}), thePage(2, 2))));
  EXPECT_FALSE(sites.all()) << "a later page starts no list";
  sites.setAll(SiteList{nullptr});
  EXPECT_EQ(itemOf(sites.all()), theSites({})) << "null entries are left out";
  sites.setAll(std::nullopt);

  const std::string inRegion = "latitude=40.7&longitude=-74.0&radius=500.0&page=";
  answerPage("page=1", {1, 2, 3}, 1, 2);
  answerPage("q=b%20%26%20c&page=2", {6}, 2, 2);
  answerPage(inRegion + "2", {7}, 2, 2);
  answerPage(inRegion + "1&per=50", {}, 1, 1);
  sites.fetch(std::nullopt, 1);
  sites.fetch(std::nullopt, 2);
  EXPECT_EQ(itemOf(sites.all()), Item{}) << "not before the answer";
  drain();
  EXPECT_EQ(itemOf(sites.all()), theSites({1, 2, 3, 4, 5})) << "searches may overlap";
  sites.fetch("b & c", 2);
  sites.fetch(region, 2, tell());
  EXPECT_THAT(outcome({Step::told}), are(told(theSites({7}))));
  EXPECT_EQ(itemOf(sites.all()), theSites({1, 2, 3, 4, 5, 6, 7})) << "whatever was searched for";
  sites.fetch(region, 1, 50, tell());
  EXPECT_THAT(outcome({Step::told}), are(told(theSites({}))));
  EXPECT_EQ(itemOf(sites.all()), theSites({}));
  sites.fetch("", 1);
  EXPECT_THAT(outcome({Step::requested}), are(requested("GET", "m/v1/sites?q=&page=1")));
}

TEST_F(Sites, GetsAllPagesOneAfterAnother) {
  // By the number of pages that the service tells: as many, one, none.
  for (const auto& [total, asked] : {std::pair(3, 3), std::pair(1, 1), std::pair(0, 1)}) {
    Steps expected{logged(Line::gettingSites)};
    Ids found;
    for (int page = 1; page <= asked; ++page) {
      const std::string query = "q=a&page=" + std::to_string(page);
      answerPage(query, {page, 10 * page}, page, total);
      expected.push_back(requested("GET", "m/v1/sites?" + query));
      found.insert(found.end(), {page, 10 * page});
    }
    sites.fetchAll("a", tell());
    EXPECT_EQ(queues->waitingCount(), 1u) << "the first page alone";
    EXPECT_THAT(outcome(), are(expected, told(theSites(found))));
  }
}

TEST_F(Sites, GoesOnFromThePageThatTheAnswerNames) {
  answerPage("page=1", {1}, 2, 4);
  answerPage("page=3", {3}, 4, 4);
  sites.fetchAll(std::nullopt, tell());
  EXPECT_THAT(outcome({Step::requested, Step::told}),
              are(requested("GET", "m/v1/sites?page=1"), requested("GET", "m/v1/sites?page=3"),
                  told(theSites({1, 3}))));
}

TEST_F(Sites, EndARunWithThePageThatFails) {
  answerPage("page=1", {1, 2}, 1, 3);
  answer("GET", "m/v1/sites?page=2", Answer::json(401, ""));
  sites.fetchAll(std::nullopt, tell());
  const auto fails = [](const char* title) {
    return Steps{logged(Line::noSites), told(theError(title, Message::notAuthorized))};
  };
  const Step second = requested("GET", "m/v1/sites?page=2");
  EXPECT_THAT(outcome(), are(logged(Line::gettingSites), requested("GET", "m/v1/sites?page=1"),
                             second, fails(Title::getSites)));
  EXPECT_EQ(itemOf(sites.all()), theSites({1, 2}));
  sites.fetch(std::nullopt, 2, tell());
  EXPECT_THAT(outcome(), are(second, fails(Title::getSites)));
  const std::string inRegion = "m/v1/sites?latitude=40.7&longitude=-74.0&radius=500.0&page=1";
  answer("GET", inRegion, Answer::json(401, ""));
  sites.fetch(region, 1, tell());
  EXPECT_THAT(outcome(), are(requested("GET", inRegion), fails(Title::getSitesForRegion)));
}

TEST_F(Sites, AreNotAskedForWithoutABaseURL) {
  UserDefaultsKey::apiBase.remove();
  const Step line = logged(Message::noURL);
  const Steps refusal = refused(Title::sites, Message::noURL);
  sites.fetch("a", 1, tell());
  sites.fetch("a", 1);
  EXPECT_THAT(happened(), are(refusal, line)) << "inside the call";
  const Step all = logged(Line::gettingSites);
  sites.fetchAll("a", tell());
  sites.fetchAll("a");
  EXPECT_THAT(happened(), are(all, refusal, all, line));
  sites.fetch(region, 1, tell());
  sites.fetch(region, 1, 50, tell());
  sites.fetch(region, 1);
  EXPECT_THAT(outcome(), are(refusal, refusal, line));
}

}  // namespace
}  // namespace ovinta::test
