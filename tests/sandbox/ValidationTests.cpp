#include <string>

#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

/// A request that is sound but for one fault.
struct Fault {
  const char* method;
  const char* path;
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
    window(kWindow + "/"),
    window(kWindow + "/2024-02-30T12:00:00.000-0400"),
    window(kWindow + "/2024-05-01T24:00:00.000-0400"),
    window(kWindow + "/2024-05-01T12:00:00.000-04:00"),
    window(kWindow + "/" + kWindow + "/" + kWindow),
    event(R"("event_type":"jump")", "event_type"),
    event(R"("state":"ready")", "event_type"),
    event(R"("event_type":"state_change")", "state"),
    event(R"("event_type":"state_change","state":null,"customer_state":null)", "state"),
    event(R"("event_type":"state_change","customer_state":"enRoute")", "customer_state"),
    event(R"("event_type":"state_change","state":"waiting")", "state"),
    event(R"("event_type":"state_change","state":"ready","eta_seconds":1.5)", "eta_seconds"),
    event(R"("event_type":"location_update","longitude":-74)", "latitude"),
    event(R"("event_type":"location_update","longitude":-74,"latitude":91)", "latitude"),
    event(R"("event_type":"location_update","longitude":"-74","latitude":40)", "longitude"),
    event(R"("event_type":"location_update","longitude":-74,"latitude":40,"beacons":[{}])",
          "beacons"),
    event(R"("event_type":"permission_update","location_permission":"always")",
          "location_permission"),
    event(R"("event_type":"customer_rating","customer_rating_value":0)", "customer_rating_value"),
    event(R"("event_type":"customer_rating","customer_rating_value":6)", "customer_rating_value"),
    event(R"("event_type":"customer_rating","customer_rating_value":"5")", "customer_rating_value"),
    {"POST", "/m/v1/events", R"({"event_type":"state_change","state":"ready"})", "order_id"},
    {"POST", "/m/v1/events", R"([])", "data"},
    {"POST", "/m/v1/orders", R"({)", "body"},
    {"POST", "/m/v1/customer", "", "data"},
};

class ValidationTest : public SandboxTest {};

TEST_F(ValidationTest, NamesTheFieldAndChangesNothing) {
  Speaker app(sandbox);
  app.becomeCustomer();
  const Dictionary before = app.createOrder().record();
  advance(std::chrono::seconds(1));
  for (const Fault& fault : kFaults) {
    SCOPED_TRACE(std::string(fault.path) + " " + fault.data);
    const Reply reply = app.send(fault.method, fault.path, fault.data);
    EXPECT_EQ(reply.status, 422);
    ASSERT_EQ(reply.errors.size(), 1u);
    EXPECT_EQ(reply.errors.begin()->first, fault.field);
    const auto* messages = reply.errors.begin()->second.as<List>();
    ASSERT_TRUE(messages && messages->size() == 1);
    EXPECT_TRUE(messages->front().as<std::string>());
  }
  EXPECT_EQ(app.send("GET", "/m/v1/orders").list(), List{before});
}

TEST_F(ValidationTest, TellsAllFaultsAtOnceInWords) {
  Speaker app(sandbox);
  app.becomeCustomer();
  const Reply reply = app.send("POST", "/m/v1/orders", R"({"pickup_window":"soon"})");
  EXPECT_EQ(
      reply.errors,
      (Dictionary{{"partner_identifier", List{"Partner identifier is missing"}},
                  {"pickup_window", List{"Pickup window must be two dates joined by a slash"}},
                  {"site_id", List{"Site id is missing"}}}));
}

TEST_F(ValidationTest, AnUpdateNeedsAPushToken) {
  Speaker app(sandbox);
  app.becomeCustomer();
  const std::string path = "/m/v1/orders/" + app.createOrder().text("redemption_code");
  for (const char* data : {R"({"customer_name":"Bo"})", R"({"push_token":7})"}) {
    const Reply reply = app.send("PUT", path, data);
    EXPECT_EQ(reply.status, 422) << data;
    EXPECT_TRUE(reply.errors.contains("push_token")) << data;
  }
}

}  // namespace
}  // namespace ovinta::sandbox
