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

TEST_F(MerchantTest, SetsTheArrivalOfAnOpenOrderAndTellsItsDevice) {
  app.createOrder("phone");
  take({{"POST", "/sandbox/orders/1001/eta", R"({"eta_seconds":90})", 200,
         R"("eta_at":"2024-05-01T12:01:30.007Z")"},
        {"POST", "/sandbox/orders/1001/eta", R"({"eta_seconds":-1})", 422, "Eta seconds must"},
        {"POST", "/sandbox/orders/1009/eta", R"({"eta_seconds":1})", 404, "unknown"},
        {"POST", "/sandbox/orders/1001/cancelled", "", 200},
        {"POST", "/sandbox/orders/1001/eta", R"({"eta_seconds":1})", 409, "final"},
        {"GET", "/sandbox/pushes", "", 200, R"("eta_at":"2024-05-01T12:01:30.007+0000")"}});
  const Reply events = app.send("GET", "/sandbox/orders/1001/events");
  std::string names;
  for (const Value& event : events.list()) {
    const auto& record = *event.as<Dictionary>();
    names += *platform::find<std::string>(record, "by") + " " +
             *platform::find<std::string>(record, "event") + " " +
             *platform::find<std::string>(record, "state") + "\n";
  }
  EXPECT_EQ(names,
            "customer created created\nmerchant estimate created\n"
            "merchant state_change cancelled\n");
}

}  // namespace
}  // namespace ovinta::sandbox
