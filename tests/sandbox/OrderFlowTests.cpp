#include <set>
#include <thread>
#include <vector>

#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

class OrderFlowTest : public SandboxTest {};

TEST_F(OrderFlowTest, CreatesACustomerAndShowsItAgain) {
  Speaker app(sandbox);
  const Reply created = app.send("POST", "/m/v1/customer",
                                 R"({"name":"Ann","car_type":"SUV","car_color":null,"phone":"5",
                                     "terms_of_service":true,"age_verification":true})");
  EXPECT_EQ(created.status, 200);
  const std::string token = created.text("api_token");
  EXPECT_EQ(
      created.record(),
      (Dictionary{{"api_token", token}, {"name", "Ann"}, {"car_type", "SUV"}, {"phone", "5"}}));
  app.setToken(token);
  EXPECT_EQ(app.send("GET", "/m/v1/customer").record(), created.record());
}

TEST_F(OrderFlowTest, ANewOrderCarriesEveryKeyThatHasAValue) {
  Speaker app(sandbox);
  app.becomeCustomer();
  const std::string window = "2024-05-01T12:00:00.000-0400/2024-05-01T12:30:00.000-0400";
  const Reply created = app.send("POST", "/m/v1/orders",
                                 R"({"site_id":42,"partner_identifier":"A-1","state":"delayed",
                                     "customer_car_type":"SUV","customer_phone":"6",
                                     "push_token":"dev:00ff","pickup_window":")" +
                                     window + "\"}");
  ASSERT_EQ(created.status, 200);
  Dictionary expected = {
      {"id", 1001},
      {"state", "delayed"},
      {"customer_state", "created"},
      {"partner_identifier", "A-1"},
      {"display_name", "Order A-1"},
      {"redemption_code", created.text("redemption_code")},
      {"pickup_window", window},
      {"pickup_type", "curbside"},
      {"created_at", "2024-05-01T12:00:00.007Z"},
      {"updated_at", "2024-05-01T12:00:00.007Z"},
      {"customer_name", "Ann"},
      {"customer_car_type", "SUV"},
      {"push_token", "dev:00ff"},
      {"site_beacon_regions",
       List{Dictionary{{"uuid", "5E1F3C7A-2B64-4D0E-9A5B-0C6D7E8F9A01"}, {"major", 42}}}},
      {"project_mobile_flow_always_show_vehicle_info_fields", true},
      {"project_mobile_flow_customer_name_editing_enabled", true},
      {"project_mobile_flow_pickup_type_selection_enabled", true},
      {"project_mobile_flow_require_vehicle_info_if_visible", false},
      {"curbside_localized_string", "Curbside"},
      {"pickup_localized_string", "Pickup"}};
  const Reply listed = app.send("GET", "/m/v1/sites?per=1");
  Dictionary site = *listed.list().at(0).as<Dictionary>();
  EXPECT_TRUE(site.contains("project_logo_url") && site.erase("geofence") == 1);
  for (const auto& [key, value] : site) {
    expected.emplace(key.starts_with("project_") ? key : "site_" + key, value);
  }
  EXPECT_EQ(created.record(), expected);
  EXPECT_THAT(created.text("redemption_code"), testing::SizeIs(6));
}

TEST_F(OrderFlowTest, EventsMoveTheOrder) {
  Speaker app(sandbox);
  app.becomeCustomer();
  Dictionary expected = app.createOrder().record();
  const struct {
    const char* event;
    Dictionary changes;
  } kSteps[] = {
      {R"("event_type":"permission_update","location_permission":"authorized_always")", {}},
      {R"("event_type":"state_change","customer_state":"en_route","eta_seconds":90)",
       {{"customer_state", "en_route"}, {"eta_at", "2024-05-01T12:01:32.007Z"}}},
      {R"("event_type":"location_update","longitude":-74,"latitude":40.75,"accuracy":5.5,
          "speed":-1,"beacons":[{"uuid":"5e1f3c7a-2b64-4d0e-9a5b-0c6d7e8f9a01","major":42,
          "minor":7,"rssi":-61.1,"distance":2}],"customer_state":"waiting")",
       {}},
      {R"("event_type":"state_change","state":"ready")", {{"state", "ready"}}},
      {R"("event_type":"state_change","customer_state":"completed")",
       {{"customer_state", "completed"}, {"completed_at", "2024-05-01T12:00:05.007Z"}}},
      {R"("event_type":"customer_rating","customer_rating_value":5,
          "customer_rating_comments":"Quick")",
       {{"customer_rating_value_string", "5"}, {"customer_rating_comments", "Quick"}}},
      {R"("event_type":"state_change","state":"completed")", {{"state", "completed"}}}};
  int second = 0;
  for (const auto& step : kSteps) {
    SCOPED_TRACE(step.event);
    advance(std::chrono::seconds(1));
    const std::string now = "2024-05-01T12:00:0" + std::to_string(++second) + ".007Z";
    expected.insert_or_assign("updated_at", now);
    for (const auto& [key, value] : step.changes) expected.insert_or_assign(key, value);
    const Reply reply =
        app.send("POST", "/m/v1/events", std::string(R"({"order_id":1001,)") + step.event + "}");
    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.record(), expected);
  }
  EXPECT_EQ(app.send("GET", "/m/v1/orders").list(), List{expected});

  const Reply merchant = app.send("GET", "/sandbox/orders");
  const auto& shown = *merchant.list().at(0).as<Dictionary>();
  const auto* device = platform::find<Dictionary>(shown, "device");
  ASSERT_TRUE(device);
  EXPECT_EQ(device->find("latitude")->second, Value(40.75));
  EXPECT_EQ(device->find("location_permission")->second, Value("authorized_always"));
}

TEST_F(OrderFlowTest, AnUpdateSetsThePushTokenAndTheCustomersDetails) {
  Speaker app(sandbox);
  app.becomeCustomer();
  Dictionary expected = app.createOrder("").record();
  const std::string path =
      "/m/v1/orders/" + std::get<std::string>(expected.find("redemption_code")->second.storage);
  EXPECT_EQ(app.send("PUT", path, R"({"push_token":"dev:01"})").text("push_token"), "dev:01");
  const Reply claimed = app.send("PUT", path,
                                 R"({"push_token":null,"customer_name":"Bo","customer_phone":"7",
                   "pickup_type":"in_store"})");
  expected.insert_or_assign("push_token", "dev:01");
  expected.insert_or_assign("customer_name", "Bo");
  expected.insert_or_assign("pickup_type", "in_store");
  EXPECT_EQ(claimed.record(), expected);
}

TEST_F(OrderFlowTest, CustomersSeeAndTouchTheirOwnOrdersOnly) {
  Speaker app(sandbox);
  app.becomeCustomer();
  const Reply order = app.createOrder();
  app.becomeCustomer();
  EXPECT_EQ(app.send("GET", "/m/v1/orders").list(), List{});
  EXPECT_EQ(app.send("POST", "/m/v1/events",
                     R"({"order_id":1001,"event_type":"state_change","state":"ready"})")
                .status,
            404);
  EXPECT_EQ(
      app.send("PUT", "/m/v1/orders/" + order.text("redemption_code"), R"({"push_token":"x"})")
          .status,
      404);
}

TEST_F(OrderFlowTest, OrdersMadeAtTheSameTimeAreAllKept) {
  constexpr int kApps = 4;
  constexpr int kOrders = 5;
  std::vector<std::thread> apps;
  apps.reserve(kApps);
  for (int index = 0; index < kApps; ++index) {
    apps.emplace_back([this] {
      Speaker app(sandbox);
      app.becomeCustomer();
      for (int order = 0; order < kOrders; ++order) app.createOrder();
    });
  }
  for (std::thread& app : apps) app.join();
  std::set<std::string> codes;
  const Reply all = Speaker(sandbox).send("GET", "/sandbox/orders");
  for (const Value& order : all.list()) {
    codes.insert(*platform::find<std::string>(*order.as<Dictionary>(), "redemption_code"));
  }
  EXPECT_EQ(codes.size(), static_cast<std::size_t>(kApps * kOrders));
}

std::string answersWithSeed(std::uint64_t seed) {
  Sandbox sandbox({.seed = seed, .now = [] { return platform::Date{}; }});
  EXPECT_EQ(sandbox.start(), std::nullopt);
  Speaker app(sandbox);
  const std::string token = app.becomeCustomer();
  app.createOrder();
  app.createOrder();
  return token + platform::writeJSON(app.send("GET", "/m/v1/orders").data);
}

TEST(SandboxSeedTest, TheSeedDecidesTokensAndCodes) {
  const std::string answers = answersWithSeed(7);
  EXPECT_THAT(answers, testing::HasSubstr("1970-01-01T00:00:00.000Z"));
  EXPECT_EQ(answersWithSeed(7), answers);
  EXPECT_NE(answersWithSeed(8), answers);
}

}  // namespace
}  // namespace ovinta::sandbox
