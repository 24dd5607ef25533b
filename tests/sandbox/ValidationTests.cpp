#include <string>

#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

/// A request that is sound but for one fault.
struct Fault {
  const char* method;
  std::string path;
  std::string data;
  /// The one field that the answer complains about.
  const char* field;
};

const std::string kCustomer = R"("name":"Ann","terms_of_service":true,"age_verification":true)";
const std::string kWindow = "2024-05-01T12:00:00.000-0400";

Fault customer(const std::string& data, const char* field) {
  return {"POST", "/m/v1/customer", "{" + data + "}", field};
}

Fault order(const std::string& data, const char* field) {
  return {"POST", "/m/v1/orders", "{" + data + "}", field};
}

Fault window(const std::string& text) {
  return order(R"("site_id":42,"partner_identifier":"A","pickup_window":")" + text + "\"",
               "pickup_window");
}

Fault event(const std::string& data, const char* field) {
  return {"POST", "/m/v1/events", R"({"order_id":1001,)" + data + "}", field};
}

Fault search(const std::string& query, const char* field) {
  return {"GET", "/m/v1/sites?" + query, "", field};
}

Fault snapshot(const std::string& list, const std::string& records, const char* field) {
  return {"PUT", "/sandbox/snapshot", "{\"" + list + "\":[" + records + "]}", field};
}

const std::string kOrder = R"({"site_id":42,"partner_identifier":"A")";
const std::string kAccount = R"({"name":"A","email":"a@b.c","password":"secret"})";

const Fault kFaults[] = {
    customer(R"("terms_of_service":true,"age_verification":true)", "name"),
    customer(R"("name":"","terms_of_service":true,"age_verification":true)", "name"),
    customer(kCustomer + R"(,"car_type":3)", "car_type"),
    customer(R"("name":"Ann","terms_of_service":false,"age_verification":true)",
             "terms_of_service"),
    customer(R"("name":"Ann","terms_of_service":true)", "age_verification"),
    order(R"("site_id":42)", "partner_identifier"),
    order(R"("site_id":41,"partner_identifier":"A")", "site_id"),
    order(R"("site_id":"42","partner_identifier":"A")", "site_id"),
    order(R"("site_id":42,"partner_identifier":"A","state":"Ready")", "state"),
    order(R"("site_id":42,"partner_identifier":"A","state":"gone")", "state"),
    window(kWindow + "/2024-02-30T12:00:00.000-0400"),
    window(kWindow + "/2024-05-01T12:00:00.000-04:00"),
    window(kWindow + "/" + kWindow + "/" + kWindow),
    event(R"("event_type":"jump")", "event_type"),
    event(R"("state":"ready")", "event_type"),
    event(R"("event_type":"state_change")", "state"),
    event(R"("event_type":"state_change","customer_state":"enRoute")", "customer_state"),
    event(R"("event_type":"state_change","state":"waiting")", "state"),
    event(R"("event_type":"state_change","state":"ready","eta_seconds":1.5)", "eta_seconds"),
    event(R"("event_type":"location_update","longitude":-74)", "latitude"),
    event(R"("event_type":"location_update","longitude":-74,"latitude":91)", "latitude"),
    event(R"("event_type":"location_update","longitude":-74,"latitude":40,"beacons":[{}])",
          "beacons"),
    event(R"("event_type":"permission_update","location_permission":"always")",
          "location_permission"),
    event(R"("event_type":"customer_rating","customer_rating_value":0)", "customer_rating_value"),
    event(R"("event_type":"customer_rating","customer_rating_value":6)", "customer_rating_value"),
    {"POST", "/m/v1/events", R"({"event_type":"state_change","state":"ready"})", "order_id"},
    {"POST", "/m/v1/events", R"([])", "data"},
    {"POST", "/m/v1/orders", R"({)", "body"},
    search("page=0", "page"),
    search("page=1.5", "page"),
    search("per=101", "per"),
    search("latitude=91&longitude=0&radius=1", "latitude"),
    search("latitude=1&longitude=0", "radius"),
    search("latitude=1&longitude=0&radius=0", "radius"),
    search("latitude=1&longitude=0&radius=inf", "radius"),
    {"PUT", "/sandbox/minimum-app-version/1.x", "", "version"},
    {"PUT", "/sandbox/snapshot", R"({"generator":"x"})", "generator"},
    {"PUT", "/sandbox/snapshot", R"({"orders":{}})", "orders"},
    {"PUT", "/sandbox/snapshot", R"({"sites":[],"orders":[)" + kOrder + "}]}", "orders.0.site_id"},
    snapshot("custmers", "", "custmers"),
    snapshot("orders", kOrder + R"(,"id":9007199254740993})", "orders.0.id"),
    snapshot("orders", kOrder + R"(,"id":9007199254740992},)" + kOrder + "}", "orders.1.id"),
    snapshot("orders", "7", "orders.0.record"),
    snapshot("orders", kOrder + "}," + kOrder + R"(,"state":"lost"})", "orders.1.state"),
    snapshot("orders", kOrder + R"(,"customer_token":"x"})", "orders.0.customer_token"),
    snapshot("orders", kOrder + R"(,"id":5},)" + kOrder + R"(,"id":5})", "orders.1.id"),
    snapshot("orders",
             kOrder + R"(,"redemption_code":"C"},)" + kOrder + R"(,"redemption_code":"C"})",
             "orders.1.redemption_code"),
    snapshot("orders", kOrder + R"(,"eta_at":"2024-05-01T12:00:00.000+0000"})", "orders.0.eta_at"),
    snapshot("customers", "{}", "customers.0.name"),
    snapshot("customers", R"({"name":"A","email":"a@b.c"})", "customers.0.email"),
    snapshot("customers", kAccount + "," + kAccount, "customers.1.email"),
    snapshot("customers", R"({"name":"A","api_token":"t"},{"name":"B","api_token":"t"})",
             "customers.1.api_token"),
    snapshot("sites", R"({"id":1,"name":"A"},{"id":1,"name":"B"})", "sites.1.id"),
    snapshot("sites", R"({"id":1,"name":"A","latitude":"91"})", "sites.0.latitude"),
    snapshot("sites", R"({"id":1,"name":"A","geofence":{"latitude":"1"}})", "sites.0.geofence"),
    snapshot("sites", R"({"id":1,"name":"A","beacon_regions":[{}]})", "sites.0.beacon_regions"),
};

using ValidationTest = CustomerTest;

TEST_F(ValidationTest, NamesTheFieldAndChangesNothing) {
  const std::string path = "/m/v1/orders/" + app.createOrder().text("redemption_code");
  const std::string before = app.send("GET", "/sandbox/snapshot").body;
  std::vector<Fault> faults(std::begin(kFaults), std::end(kFaults));
  for (const char* update : {R"({"customer_name":"Bo"})", R"({"push_token":7})"}) {
    faults.push_back({"PUT", path, update, "push_token"});
  }
  advance(std::chrono::seconds(1));
  for (const Fault& fault : faults) {
    SCOPED_TRACE(fault.path + " " + fault.data);
    const Reply reply = app.send(fault.method, fault.path, fault.data);
    EXPECT_EQ(reply.status, 422);
    EXPECT_THAT(platform::writeJSON(reply.errors),
                testing::MatchesRegex(std::string(R"(\{")") + fault.field + R"(":\["[^"]+"\]\})"));
    EXPECT_EQ(app.send("GET", "/sandbox/snapshot").body, before);
  }
}

TEST_F(ValidationTest, TellsAllFaultsAtOnceInWords) {
  const std::string faults = "/sandbox/faults/GET/m/v1/app";
  const std::tuple<const char*, std::string, const char*, const char*> kCases[] = {
      {"POST", "/m/v1/orders", R"({"pickup_window":"soon"})",
       R"({"partner_identifier":["Partner identifier is missing"],)"
       R"("pickup_window":["Pickup window must be two dates joined by a slash"],)"
       R"("site_id":["Site id is missing"]})"},
      {"PUT", faults, R"({"fault":"earthquake","count":0})",
       R"({"count":["Count must be an integer above 0"],"fault":["Fault is unknown"]})"},
      {"PUT", faults, R"({"fault":"gone","status":410})",
       R"({"status":["status is no setting of this fault"]})"},
      {"PUT", faults, R"({"fault":"status","status":199,"content_type":"a\nb"})",
       R"({"content_type":["Content type must be one line of text and not empty"],)"
       R"("status":["Status must be an integer from 200 to 599"]})"},
      {"PUT", faults, R"({"fault":"delay"})", R"({"seconds":["Seconds is missing"]})"},
      {"PUT", faults, R"({"fault":"delay","seconds":3601})",
       R"({"seconds":["Seconds must be a number from 0 to 3600"]})"},
      {"PUT", faults, R"({"fault":"oversize_body","length":0})",
       R"({"length":["Length must be an integer above 0"]})"},
  };
  for (const auto& [method, path, data, errors] : kCases) {
    const Reply reply = app.send(method, path, data);
    EXPECT_EQ(reply.status, 422) << data;
    EXPECT_EQ(platform::writeJSON(reply.errors), errors) << data;
  }
  EXPECT_EQ(app.send("GET", "/sandbox/faults").list(), List{});
}

TEST_F(ValidationTest, UnknownPathsAndMethodsAreNotFound) {
  app.createOrder();
  const std::string gone = R"({"fault":"gone"})";
  take({{"GET", "/nowhere", "", 404},
        {"POST", "/m/v1/order", "", 404},
        {"DELETE", "/m/v1/orders", "", 404},
        {"GET", "/m/v1/orders/NOCODE/edit", "", 404},
        {"PUT", "/m/v1/orders/NOCODE", R"({"push_token":"x"})", 404},
        {"POST", "/sandbox/orders/1/ready", "", 404},
        {"POST", "/sandbox/orders/99999999999999999999/gone", "", 404},
        {"POST", "/sandbox/orders/1001/created", "", 404},
        {"PUT", "/sandbox/faults/GET/sandbox/faults", gone, 404},
        {"PUT", "/sandbox/faults/PATCH/m/v1/app", gone, 404},
        {"DELETE", "/sandbox/faults/GET/m/v1/nothing", "", 404}});
}

}  // namespace
}  // namespace ovinta::sandbox
