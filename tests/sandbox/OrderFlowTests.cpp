#include <set>
#include <thread>

#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

using OrderFlowTest = CustomerTest;

TEST_F(OrderFlowTest, ANewOrderCarriesEveryKeyThatHasAValue) {
  const Reply created = app.send("POST", "/m/v1/orders",
                                 R"({"site_id":42,"partner_identifier":"A-1","state":"delayed",
      "customer_car_type":"SUV","customer_phone":"6","push_token":"dev:00ff",
      "pickup_window":"2024-05-01T12:00:00.000-0400/2024-05-01T12:30:00.000-0400"})");
  Dictionary expected = *platform::parseJSON(R"({"id":1001,"state":"delayed",
      "customer_state":"created","partner_identifier":"A-1","display_name":"Order A-1",
      "pickup_window":"2024-05-01T12:00:00.000-0400/2024-05-01T12:30:00.000-0400",
      "pickup_type":"curbside","created_at":"2024-05-01T12:00:00.007Z",
      "updated_at":"2024-05-01T12:00:00.007Z","customer_name":"Ann","customer_car_type":"SUV",
      "push_token":"dev:00ff",
      "site_beacon_regions":[{"uuid":"5E1F3C7A-2B64-4D0E-9A5B-0C6D7E8F9A01","major":42}],
      "project_mobile_flow_always_show_vehicle_info_fields":true,
      "project_mobile_flow_customer_name_editing_enabled":true,
      "project_mobile_flow_pickup_type_selection_enabled":true,
      "project_mobile_flow_require_vehicle_info_if_visible":false,
      "curbside_localized_string":"Curbside","pickup_localized_string":"Pickup"})")
                             ->as<Dictionary>();
  expected.emplace("redemption_code", created.text("redemption_code"));
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

  const std::string merchants = app.send("GET", "/sandbox/orders").body;
  EXPECT_THAT(merchants, testing::HasSubstr(R"("latitude":40.75)"));
  EXPECT_THAT(merchants, testing::HasSubstr(R"("location_permission":"authorized_always")"));
}

TEST_F(OrderFlowTest, WhatIsOverTakesNewsButNoNewState) {
  const std::string location = R"("event_type":"location_update","longitude":-74,"latitude":40.5)";
  const std::string permission =
      R"("event_type":"permission_update","location_permission":"authorized_always")";
  const std::string rating = R"("event_type":"customer_rating","customer_rating_value":5)";
  const auto state = [](const std::string& fields) {
    return R"("event_type":"state_change",)" + fields;
  };
  const struct {
    std::string end;
    /// Event and status.
    std::vector<std::pair<std::string, int>> events;
  } kCases[] = {{R"("state":"completed")",
                 {{location, 200},
                  {permission, 200},
                  {rating, 200},
                  {state(R"("state":"completed")"), 200},
                  {state(R"("customer_state":"arrived")"), 200},
                  {state(R"("state":"ready")"), 422},
                  {state(R"("state":"gone")"), 422}}},
                {R"("customer_state":"completed")",
                 {{location, 200},
                  {rating, 200},
                  {state(R"("customer_state":"arrived")"), 422},
                  {state(R"("state":"ready")"), 200}}},
                {R"("state":"cancelled")", {{rating, 200}, {state(R"("state":"completed")"), 422}}},
                {R"("state":"gone")",
                 {{location, 410},
                  {permission, 410},
                  {rating, 410},
                  {state(R"("state":"gone")"), 410},
                  {state(R"("state":"jump")"), 410}}}};
  std::string id = "1000";
  for (const auto& [end, events] : kCases) {
    ++id.back();
    app.createOrder();
    const auto report = [&](const std::string& event) {
      return app.send("POST", "/m/v1/events", R"({"order_id":)" + id + "," + event + "}");
    };
    const Reply ended = report(state(end));
    EXPECT_EQ(ended.record().contains("completed_at"), end.find("completed") != end.npos) << end;
    advance(std::chrono::seconds(1));
    for (const auto& [event, status] : events) {
      const std::string before = app.send("GET", "/sandbox/orders").body;
      const Reply reply = report(event);
      EXPECT_EQ(reply.status, status) << end << " " << event;
      if (status != 200) {
        EXPECT_EQ(app.send("GET", "/sandbox/orders").body, before) << end << " " << event;
      } else if (ended.record().contains("completed_at")) {
        EXPECT_EQ(reply.text("completed_at"), ended.text("completed_at")) << end << " " << event;
      }
    }
  }
  take({{"POST", "/sandbox/orders/1004/gone", "", 409, "State is final"}});
}

TEST_F(OrderFlowTest, TheDeviceKeepsTheBeaconsThatItHeardLast) {
  app.createOrder();
  const std::string beacon = R"({"uuid":"5e1f3c7a-2b64-4d0e-9a5b-0c6d7e8f9a01","major":42,)"
                             R"("minor":7,"rssi":-61.5,"distance":2})";
  const std::pair<std::string, std::string> kCases[] = {
      {R"(,"beacons":[)" + beacon + "," + beacon + "]", R"("minor":7)"},
      {"", R"("minor":7)"},
      {R"(,"beacons":[])", R"("beacons":[])"}};
  for (const auto& [beacons, expected] : kCases) {
    app.send("POST", "/m/v1/events",
             R"({"order_id":1001,"event_type":"location_update","longitude":-74,"latitude":40.5)" +
                 beacons + "}");
    EXPECT_THAT(app.send("GET", "/sandbox/orders").body, testing::HasSubstr(expected)) << beacons;
  }
}

TEST_F(OrderFlowTest, TheCodeFindsTheMerchantsOrderAndMakesItTheCustomers) {
  const std::string code = app.offerOrder(R"(,"customer_car_color":"red")");
  const std::string path = "/m/v1/orders/" + code;
  Dictionary expected = Speaker(sandbox).send("GET", path + "/edit").record();
  EXPECT_EQ(app.send("GET", "/m/v1/orders").list(), List{});
  advance(std::chrono::seconds(1));
  const std::pair<const char*, Dictionary> kSteps[] = {
      {R"({"push_token":null,"customer_car_type":"SUV","pickup_type":"in_store"})",
       {{"customer_name", "Ann"},
        {"customer_car_type", "SUV"},
        {"pickup_type", "in_store"},
        {"redeemed_at", "2024-05-01T12:00:01.007Z"},
        {"updated_at", "2024-05-01T12:00:01.007Z"}}},
      {R"({"push_token":"dev:01"})", {{"push_token", "dev:01"}}},
      {R"({"push_token":null,"customer_name":"Bo","customer_phone":"7"})",
       {{"customer_name", "Bo"}}}};
  for (const auto& [data, changes] : kSteps) {
    for (const auto& [key, value] : changes) expected.insert_or_assign(key, value);
    EXPECT_EQ(app.send("PUT", path, data).record(), expected) << data;
  }
  EXPECT_EQ(app.send("GET", "/m/v1/orders").list(), List{expected});
}

TEST_F(OrderFlowTest, OrdersThatAreOverCannotBeClaimed) {
  const std::tuple<const char*, int, int> kCases[] = {
      {"cancelled", 200, 422}, {"completed", 200, 422}, {"gone", 410, 410}};
  for (const auto& [state, lookUp, claim] : kCases) {
    const std::string path =
        "/m/v1/orders/" + app.offerOrder(R"(,"state":")" + std::string(state) + "\"");
    take({{"GET", path + "/edit", "", lookUp}, {"PUT", path, R"({"push_token":"x"})", claim}});
  }
}

TEST_F(OrderFlowTest, CustomersSeeAndTouchTheirOwnOrdersOnly) {
  const std::string path = "/m/v1/orders/" + app.createOrder().text("redemption_code");
  app.becomeCustomer();
  take({{"GET", "/m/v1/orders", "", 200, R"("data":[])"},
        {"POST", "/m/v1/events", R"({"order_id":1001,"event_type":"state_change","state":"ready"})",
         404},
        {"PUT", path, R"({"push_token":"x"})", 404, "another customer's"}});
}

TEST_F(OrderFlowTest, OrdersMadeAtTheSameTimeAreAllKept) {
  constexpr int kApps = 4;
  constexpr int kOrders = 5;
  std::vector<std::thread> apps;
  apps.reserve(kApps);
  for (int index = 0; index < kApps; ++index) {
    apps.emplace_back([this] {
      Speaker other(sandbox);
      other.becomeCustomer();
      for (int order = 0; order < kOrders; ++order) other.createOrder();
    });
  }
  for (std::thread& app : apps) app.join();
  std::set<std::string> codes;
  const Reply all = app.send("GET", "/sandbox/orders");
  for (const Value& order : all.list()) {
    codes.insert(*platform::find<std::string>(*order.as<Dictionary>(), "redemption_code"));
  }
  EXPECT_EQ(codes.size(), static_cast<std::size_t>(kApps * kOrders));
}

TEST(SandboxSeedTest, TheSeedDecidesTheTokens) {
  const auto tokenWithSeed = [](std::uint64_t seed) {
    Sandbox sandbox({.seed = seed});
    EXPECT_EQ(sandbox.start(), std::nullopt);
    return Speaker(sandbox).becomeCustomer();
  };
  EXPECT_EQ(tokenWithSeed(7), tokenWithSeed(7));
  EXPECT_NE(tokenWithSeed(8), tokenWithSeed(7));
}

}  // namespace
}  // namespace ovinta::sandbox
