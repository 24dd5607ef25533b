#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

using MerchantTest = CustomerTest;

TEST_F(MerchantTest, MovesAnOrderWhereThatIsPossible) {
  const struct {
    const char* before;
    const char* customer;
    const char* move;
    int status;
  } kCases[] = {
      {"created", "created", "ready", 200},     {"created", "waiting", "delayed", 200},
      {"delayed", "arrived", "ready", 200},     {"ready", "nearby", "cancelled", 200},
      {"ready", "waiting", "ready", 409},       {"cancelled", "created", "ready", 409},
      {"completed", "waiting", "delayed", 409}, {"ready", "completed", "cancelled", 409},
      {"cancelled", "created", "gone", 200},    {"ready", "completed", "gone", 200},
  };
  int id = 1000;
  for (const auto& test : kCases) {
    const std::string order = std::to_string(++id);
    SCOPED_TRACE(std::string(test.before) + ", " + test.customer + " to " + test.move);
    app.createOrder();
    app.send("POST", "/m/v1/events",
             R"({"order_id":)" + order + R"(,"event_type":"state_change","state":")" + test.before +
                 R"(","customer_state":")" + test.customer + "\"}");
    advance(std::chrono::seconds(1));
    const Reply reply = app.send("POST", "/sandbox/orders/" + order + "/" + test.move);
    EXPECT_EQ(reply.status, test.status);
    EXPECT_EQ(reply.errors.contains("state"), test.status == 409);
    const Reply list = app.send("GET", "/m/v1/orders");
    const auto& after = *list.list().back().as<Dictionary>();
    const bool isMoved = test.status == 200;
    EXPECT_EQ(after.find("state")->second, Value(isMoved ? test.move : test.before));
    if (test.before == std::string("completed")) {
      const Reply back =
          app.send("POST", "/m/v1/events",
                   R"({"order_id":)" + order + R"(,"event_type":"state_change","state":"ready"})");
      EXPECT_THAT(back.errors, testing::ElementsAre(testing::Key("state")));
    }
    EXPECT_EQ(after.find("updated_at")->second != after.find("created_at")->second, isMoved);
  }
}

TEST_F(MerchantTest, EventsOnAGoneOrderAreRefusedAsGone) {
  app.createOrder();
  const std::string event = R"(,"event_type":"state_change","state":"ready"})";
  take({{"POST", "/sandbox/orders/1001/gone", "", 200, R"("state":"gone")"},
        {"POST", "/m/v1/events", R"({"order_id":1001)" + event, 410},
        {"POST", "/m/v1/events", R"({"order_id":1002)" + event, 404}});
  EXPECT_EQ(app.send("POST", "/m/v1/events", R"({"order_id":1001)" + event).body, "");
}

TEST_F(MerchantTest, ThePageShowsAllButPasswordsAndEscapesWhatCustomersWrote) {
  app.send("PATCH", "/m/v1/customer/sign_up",
           R"({"email":"a@b.c","password":"secret","password_confirmation":"secret"})");
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
