#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

using ClockTest = CustomerTest;

TEST_F(ClockTest, ShowsWhatItIsSetToAndGoesOnFromThere) {
  take({{"GET", "/sandbox/clock", "", 200, R"("now":"2024-05-01T12:00:00.007Z")"},
        {"PUT", "/sandbox/clock", R"({"now":"2030-02-28T23:59:59.500Z"})", 200,
         R"("now":"2030-02-28T23:59:59.500Z")"}});
  advance(std::chrono::seconds(2));
  take({{"GET", "/sandbox/clock", "", 200, R"("now":"2030-03-01T00:00:01.500Z")"},
        {"POST", "/sandbox/clock/advance", R"({"seconds":0.25})", 200, "00:00:01.750Z"},
        {"DELETE", "/sandbox/clock", "", 200, R"("ahead_seconds":0)"},
        {"POST", "/sandbox/clock/advance", R"({"seconds":3600})", 200, R"("ahead_seconds":3600)"},
        {"GET", "/sandbox/clock", "", 200, "2024-05-01T13:00:02.007Z"},
        {"POST", "/sandbox/reset", "", 200},
        {"GET", "/sandbox/clock", "", 200, R"("now":"2024-05-01T12:00:02.007Z")"}});
}

TEST_F(ClockTest, AnOrderLivesThroughItsPickupWindowWithoutWaiting) {
  const std::string window = R"("2024-05-01T14:00:00.000+0000/2024-05-01T15:00:00.000+0000")";
  const std::string order =
      R"({"site_id":42,"partner_identifier":"A-1","pickup_window":)" + window + "}";
  const std::string arriving =
      R"({"order_id":1001,"event_type":"location_update","longitude":-74,"latitude":40.5,
          "eta_seconds":60})";
  take({{"POST", "/m/v1/orders", order, 200, R"("created_at":"2024-05-01T12:00:00.007Z")"},
        {"POST", "/sandbox/clock/advance", R"({"seconds":7200})", 200},
        {"POST", "/m/v1/events", arriving, 200},
        {"GET", "/m/v1/orders", "", 200, R"("eta_at":"2024-05-01T14:01:00.007Z")"},
        {"POST", "/sandbox/clock/advance", R"({"seconds":7200})", 200},
        {"POST", "/m/v1/events",
         R"({"order_id":1001,"event_type":"state_change","state":"completed"})", 200},
        {"GET", "/m/v1/orders", "", 200, R"("completed_at":"2024-05-01T16:00:00.007Z")"}});
}

TEST_F(ClockTest, ATimeThatCannotBeIsRefusedAndChangesNothing) {
  for (const char* now : {R"("1969-12-31T23:59:59.999Z")", R"("9900-01-01T00:00:00.000Z")",
                          R"("0000-01-01T00:00:00.000Z")", R"("2024-05-01")", "5", "null"}) {
    take({{"PUT", "/sandbox/clock", std::string(R"({"now":)") + now + "}", 422, R"("now":[)"}});
  }
  take({{"PUT", "/sandbox/clock", R"({"now":"9899-12-31T23:59:59.000Z"})", 200}});
  for (const char* seconds : {"1", "-1", "1e300", "3155760001", "\"5\"", "null"}) {
    take({{"POST", "/sandbox/clock/advance", std::string(R"({"seconds":)") + seconds + "}", 422,
           R"("seconds":[)"}});
  }
  take({{"GET", "/sandbox/clock", "", 200, R"("now":"9899-12-31T23:59:59.000Z")"}});
}

}  // namespace
}  // namespace ovinta::sandbox
