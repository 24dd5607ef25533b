// Looking sites up: what is asked, what is gathered, and what is reported.
#include <gmock/gmock.h>

#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/support/SDKFixture.h"

namespace ovinta {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

using Ids = std::vector<std::int64_t>;

Ids ids(const std::optional<SiteList>& sites) {
  Ids found;
  for (const SitePtr& site : sites.value_or(SiteList{})) found.push_back(site->id);
  return found;
}

class Sites : public test::SDKFixture {
 protected:
  struct Outcome {
    std::optional<SiteList> sites;
    std::optional<Pagination> pagination;
    ErrorPtr error;
  };

  void answerPage(const std::string& query, const Ids& sites, int current, int count) {
    platform::List records;
    for (const std::int64_t id : sites) records.emplace_back(platform::Dictionary{{"id", id}});
    answer("GET", "m/v1/sites?" + query,
           Answer::json(200, test::sitesText(std::move(records), current, count)));
  }

  SitesCallback keep() {
    return [this](const auto& sites, const auto& error) { outcomes.push_back({sites, {}, error}); };
  }
  SitesPageCallback keepPage() {
    return [this](const auto& sites, const auto& pagination, const auto& error) {
      outcomes.push_back({sites, pagination, error});
    };
  }

  static constexpr platform::Coordinate kCenter{.latitude = 40.7, .longitude = -74};
  const platform::CircularRegion region{.center = kCenter, .radius = 500, .identifier = "unused"};
  SitesManager& sites = Ovinta::sites();
  std::vector<Outcome> outcomes;
};

TEST_F(Sites, GathersThePagesOfAnySearch) {
  answerPage("page=2", {4, 5}, 2, 2);
  sites.fetch(std::nullopt, 2, keepPage());
  drain();
  EXPECT_EQ(ids(outcomes.at(0).sites), (Ids{4, 5}));
  EXPECT_EQ(outcomes[0].pagination, (Pagination{.currentPage = 2, .totalPages = 2}));
  EXPECT_EQ(outcomes[0].error, nullptr);
  EXPECT_FALSE(sites.all()) << "a later page starts no list";

  answerPage("page=1", {1, 2, 3}, 1, 2);
  answerPage("q=b%20%26%20c&page=2", {6}, 2, 2);
  answerPage("latitude=40.7&longitude=-74.0&radius=500.0&page=2", {7}, 2, 2);
  answerPage("latitude=40.7&longitude=-74.0&radius=500.0&page=1&per=50", {}, 1, 1);
  sites.fetch(std::nullopt, 1);
  sites.fetch(std::nullopt, 2);
  EXPECT_THAT(ids(sites.all()), IsEmpty()) << "not before the answer";
  drain();
  EXPECT_EQ(ids(sites.all()), (Ids{1, 2, 3, 4, 5})) << "searches may overlap";
  sites.fetch("b & c", 2);
  sites.fetch(region, 2, keep());
  drain();
  EXPECT_EQ(ids(outcomes.at(1).sites), Ids{7});
  EXPECT_EQ(ids(sites.all()), (Ids{1, 2, 3, 4, 5, 6, 7})) << "whatever was searched for";
  sites.fetch(region, 1, 50, keep());
  drain();
  EXPECT_TRUE(sites.all() && sites.all()->empty());
  sites.fetch("", 1);
  drain();
  EXPECT_EQ(requestLines().back(), "GET m/v1/sites?q=&page=1");
}

TEST_F(Sites, GetsAllPagesOneAfterAnother) {
  const struct {
    int total;
    std::vector<Ids> pages;
  } rows[] = {{3, {{1, 2}, {3}, {4}}}, {1, {{5}}}, {0, {{6}}}};
  for (const auto& [total, pages] : rows) {
    SCOPED_TRACE(total);
    std::vector<std::string> lines;
    Ids expected;
    for (std::size_t page = 1; page <= pages.size(); ++page) {
      const std::string query = "q=a&page=" + std::to_string(page);
      answerPage(query, pages[page - 1], static_cast<int>(page), total);
      lines.push_back("GET m/v1/sites?" + query);
      expected.insert(expected.end(), pages[page - 1].begin(), pages[page - 1].end());
    }
    const auto before = requests().size();
    outcomes.clear();
    sites.fetchAll("a", keep());
    EXPECT_EQ(logLines().back(), "Getting All Sites");
    EXPECT_EQ(queues->waitingCount(), 1u) << "the first page alone";
    drain();
    auto asked = requestLines();
    asked.erase(asked.begin(), asked.begin() + static_cast<std::ptrdiff_t>(before));
    EXPECT_EQ(asked, lines);
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_EQ(ids(outcomes[0].sites), expected);
    EXPECT_EQ(outcomes[0].error, nullptr);
  }
}

TEST_F(Sites, EndARunWithThePageThatFails) {
  answerPage("page=1", {1, 2}, 1, 3);
  answer("GET", "m/v1/sites?page=2", Answer::json(401, ""));
  sites.fetchAll(std::nullopt, keep());
  sites.fetch(region, 1, keep());
  sites.fetch(std::nullopt, 2, keepPage());
  drain();
  ASSERT_EQ(outcomes.size(), 3u);
  for (const Outcome& outcome : outcomes) {
    EXPECT_FALSE(outcome.sites || outcome.pagination);
    EXPECT_NE(outcome.error, nullptr);
  }
  EXPECT_EQ(ids(sites.all()), (Ids{1, 2}));
  EXPECT_THAT(logLines(), Contains("Got an error getting sites").Times(3));
}

TEST_F(Sites, AreNotAskedForWithoutABaseURL) {
  UserDefaultsKey::apiBase.remove();
  sites.fetch("a", 1, keepPage());
  sites.fetchAll("a", keep());
  sites.fetch(region, 1, keep());
  sites.fetch(region, 1, 50, keep());
  ASSERT_EQ(outcomes.size(), 4u) << "inside the call";
  for (const Outcome& outcome : outcomes) {
    EXPECT_FALSE(outcome.sites || outcome.pagination);
    const auto* error = dynamic_cast<const SitesManagerError*>(outcome.error.get());
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->type(), SitesManagerErrorType::loadingApiUrl);
    EXPECT_EQ(error->title(), "Error with Sites Manager");
  }
  const char* const kRefusal = "Could not load API url";
  EXPECT_THAT(logLines(), ElementsAre(kRefusal, "Getting All Sites", kRefusal, kRefusal, kRefusal));
  sites.fetch("a", 1);
  sites.fetchAll("a");
  sites.fetch(region, 1);
  drain();
  EXPECT_THAT(requests(), IsEmpty());
}

}  // namespace
}  // namespace ovinta
