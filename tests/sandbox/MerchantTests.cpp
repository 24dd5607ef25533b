#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

using MerchantTest = CustomerTest;

TEST_F(MerchantTest, MovesAnOrderWhereThatIsPossible) {
  const std::tuple<std::string, std::string, std::string, bool> kCases[] = {
      {"created", "created", "ready", true},      {"created", "waiting", "delayed", true},
      {"delayed", "arrived", "ready", true},      {"ready", "nearby", "cancelled", true},
      {"ready", "waiting", "ready", false},       {"cancelled", "created", "ready", false},
      {"completed", "waiting", "delayed", false}, {"ready", "completed", "cancelled", false},
      {"cancelled", "created", "gone", true},     {"ready", "completed", "gone", true},
  };
  int id = 1000;
  for (const auto& [before, customer, move, isPossible] : kCases) {
    const std::string order = std::to_string(++id);
    SCOPED_TRACE(before + ", " + customer + " to " + move);
    app.createOrder();
    app.send("POST", "/m/v1/events",
             R"({"order_id":)" + order + R"(,"event_type":"state_change","state":")" + before +
                 R"(","customer_state":")" + customer + "\"}");
    advance(std::chrono::seconds(1));
    const Reply reply = app.send("POST", "/sandbox/orders/" + order + "/" + move);
    EXPECT_EQ(reply.status, isPossible ? 200 : 409);
    EXPECT_EQ(reply.errors.contains("state"), !isPossible);
    const Reply list = app.send("GET", "/m/v1/orders");
    const auto& after = *list.list().back().as<Dictionary>();
    EXPECT_EQ(after.find("state")->second, Value(isPossible ? move : before));
    if (before == "completed") {
      const Reply back =
          app.send("POST", "/m/v1/events",
                   R"({"order_id":)" + order + R"(,"event_type":"state_change","state":"ready"})");
      EXPECT_THAT(back.errors, testing::ElementsAre(testing::Key("state")));
    }
    EXPECT_EQ(after.find("updated_at")->second != after.find("created_at")->second, isPossible);
  }
}

TEST_F(MerchantTest, ThePageShowsAllButPasswordsAndEscapesWhatCustomersWrote) {
  app.signUp("a@b.c");
  app.send("POST", "/m/v1/orders",
           R"({"site_id":43,"partner_identifier":"A","customer_name":"<b>\"Bo\" & Co"})");
  httplib::Client browser("127.0.0.1", sandbox.port());
  const auto page = browser.Get("/sandbox/");
  ASSERT_TRUE(page);
  EXPECT_EQ(page->get_header_value("Content-Type"), "text/html; charset=utf-8");
  EXPECT_THAT(page->body, testing::HasSubstr("<td>&lt;b&gt;&quot;Bo&quot; &amp; Co</td>"));
  for (const char* part : {"action=\"/sandbox/orders/1001/ready\"", "<td>/m/v1/customer</td>",
                           "<td>a@b.c</td>", "<td>55</td><td>Old Town Hall Market</td>"}) {
    EXPECT_THAT(page->body, testing::HasSubstr(part));
  }
  EXPECT_THAT(page->body, testing::Not(testing::HasSubstr("secret")));
}

}  // namespace
}  // namespace ovinta::sandbox
