#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

class SiteTest : public SandboxTest {
 protected:
  static std::vector<std::int64_t> ids(const Reply& reply) {
    std::vector<std::int64_t> ids;
    for (const Value& site : reply.list()) {
      ids.push_back(*platform::find<std::int64_t>(*site.as<Dictionary>(), "id"));
    }
    return ids;
  }
};

TEST_F(SiteTest, SearchesAnswerAPageOfWhatMatches) {
  const std::tuple<std::string, std::vector<std::int64_t>, std::string> kCases[] = {
      {"?", {42, 43, 44, 45, 46, 47, 48, 49, 50, 51}, R"({"count":2,"current":1,"next":)"},
      {"?page=2", {52, 53, 54, 55}, R"({"count":2,"current":2,"per":10,"previous":)"},
      {"?page=9&per=100", {}, R"({"count":1,"current":9,"per":100})"},
      {"?q=boSTON&per=3&page=2",
       {51},
       R"({"count":2,"current":2,"per":3,"previous":"/m/v1/sites?page=1&per=3&q=boSTON"})"},
      {"?q=new%20york%2C&per=2",
       {42, 44},
       R"({"count":3,"current":1,"next":"/m/v1/sites?page=2&per=2&q=new%20york%2C","per":2})"},
      {"?page=2&per=2&q=new%20york%2C",
       {45, 46},
       R"({"count":3,"current":2,"next":"/m/v1/sites?page=3&per=2&q=new%20york%2C","per":2,)"},
      {"?q=1%20g", {42}, R"({"count":1,"current":1,"per":10})"},
      {"?q=store-47", {47}, R"({"count":1,"current":1,"per":10})"},
      {"?latitude=40.7411&longitude=-73.9897&radius=2500.5", {42, 44, 46}, R"({"count":1,)"},
      {"?latitude=40.7411&longitude=-73.9897&radius=2500&q=pier&per=1", {44}, R"({"count":1,)"},
      {"?latitude=0&longitude=180&radius=1", {}, R"({"count":0,)"}};
  for (const auto& [query, expectedIds, pages] : kCases) {
    SCOPED_TRACE(query);
    const Reply reply = app.send("GET", "/m/v1/sites" + query);
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(ids(reply), expectedIds);
    EXPECT_THAT(reply.body, testing::HasSubstr(R"("pages":)" + pages));
  }
}

}  // namespace
}  // namespace ovinta::sandbox
