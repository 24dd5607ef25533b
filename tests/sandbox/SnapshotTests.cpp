#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "sandbox/SnapshotFile.h"
#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

namespace fs = std::filesystem;

/// Leaves traces of every kind: an account with a pending reset, an order under way, one to claim.
void leaveTraces(Speaker& app) {
  app.becomeCustomer();
  app.send("PATCH", "/m/v1/customer/sign_up",
           R"({"email":"a@b.c","password":"secret","password_confirmation":"secret"})");
  app.send("POST", "/m/v1/customer/password", R"({"email":"a@b.c"})");
  app.createOrder();
  app.send("POST", "/m/v1/events", R"({"order_id":1001,"event_type":"location_update",
                                       "longitude":-74,"latitude":40.5})");
  app.send("POST", "/m/v1/events", R"({"order_id":1001,"event_type":"customer_rating",
                                       "customer_rating_value":4})");
  app.send("POST", "/sandbox/orders", R"({"site_id":43,"partner_identifier":"B"})");
}

class SnapshotTest : public SandboxTest {};

TEST_F(SnapshotTest, RestoringBringsBackEverythingAndWhatIsMadeNext) {
  Speaker app(sandbox);
  leaveTraces(app);
  const Reply snapshot = app.send("GET", "/sandbox/snapshot");
  const Reply next = app.createOrder();
  app.send("POST", "/sandbox/reset");
  EXPECT_EQ(app.send("GET", "/sandbox/customers").list(), List{});
  EXPECT_EQ(app.send("GET", "/sandbox/orders").list(), List{});

  EXPECT_EQ(app.sendBody("PUT", "/sandbox/snapshot", snapshot.body).body, snapshot.body);
  EXPECT_EQ(app.send("GET", "/sandbox/snapshot").body, snapshot.body);
  EXPECT_EQ(app.createOrder().body, next.body);
}

TEST_F(SnapshotTest, AnInvalidDocumentChangesNothing) {
  Speaker app(sandbox);
  leaveTraces(app);
  const std::string before = app.send("GET", "/sandbox/snapshot").body;
  const std::string order = R"("site_id":42,"partner_identifier":"A")";
  const std::string account = R"("name":"A","email":"a@b.c","password":"secret")";
  const auto orders = [](const std::string& records) { return R"({"orders":[)" + records + "]}"; };
  const auto customers = [](const std::string& records) {
    return R"({"customers":[)" + records + "]}";
  };
  const std::pair<std::string, const char*> kCases[] = {
      {R"({"generator":"x"})", "generator"},
      {R"({"orders":{}})", "orders"},
      {R"({"custmers":[]})", "custmers"},
      {orders("{" + order + R"(,"id":9007199254740993})"), "orders.0.id"},
      {orders("{" + order + R"(,"id":9007199254740992},{)" + order + "}"), "orders.1.id"},
      {orders("7"), "orders.0.record"},
      {orders("{" + order + "},{" + order + R"(,"state":"lost"})"), "orders.1.state"},
      {orders(R"({"site_id":1,"partner_identifier":"A"})"), "orders.0.site_id"},
      {R"({"sites":[],"orders":[{)" + order + "}]}", "orders.0.site_id"},
      {orders("{" + order + R"(,"customer_token":"x"})"), "orders.0.customer_token"},
      {orders("{" + order + R"(,"id":5},{)" + order + R"(,"id":5})"), "orders.1.id"},
      {orders("{" + order + R"(,"redemption_code":"C"},{)" + order + R"(,"redemption_code":"C"})"),
       "orders.1.redemption_code"},
      {orders("{" + order + R"(,"eta_at":"2024-05-01T12:00:00.000+0000"})"), "orders.0.eta_at"},
      {customers("{}"), "customers.0.name"},
      {customers(R"({"name":"A","email":"a@b.c"})"), "customers.0.email"},
      {customers("{" + account + "},{" + account + "}"), "customers.1.email"},
      {customers(R"({"name":"A","api_token":"t"},{"name":"B","api_token":"t"})"),
       "customers.1.api_token"},
      {R"({"sites":[{"id":1,"name":"A"},{"id":1,"name":"B"}]})", "sites.1.id"},
      {R"({"sites":[{"id":1,"name":"A","latitude":"91"}]})", "sites.0.latitude"},
      {R"({"sites":[{"id":1,"name":"A","geofence":{"latitude":"1"}}]})", "sites.0.geofence"},
      {R"({"sites":[{"id":1,"name":"A","beacon_regions":[{}]}]})", "sites.0.beacon_regions"}};
  for (const auto& [document, field] : kCases) {
    SCOPED_TRACE(document);
    const Reply reply = app.send("PUT", "/sandbox/snapshot", document);
    EXPECT_EQ(reply.status, 422);
    EXPECT_TRUE(reply.errors.size() == 1 && reply.errors.contains(field)) << reply.body;
    EXPECT_EQ(app.send("GET", "/sandbox/snapshot").body, before);
  }
}

class SeedFileTest : public testing::Test {
 protected:
  SeedFileTest() : path_(fs::temp_directory_path() / name()) {}
  ~SeedFileTest() override { fs::remove(path_); }

  static std::string name() { return "ovinta-seed-" + std::to_string(::getpid()) + ".json"; }
  void write(const std::string& text) const { std::ofstream(path_) << text; }
  Options options() const { return {.seedFile = path_.string()}; }

  const fs::path path_;
};

TEST_F(SeedFileTest, AShortFileIsFilledUpAndIsWhatAResetLeadsTo) {
  write(R"({"data":{"sites":[{"id":7,"name":"Corner"}],"customers":[{"name":"Ann","api_token":"t"}],
            "orders":[{"site_id":7,"partner_identifier":"A","customer_token":"t"}]}})");
  Sandbox sandbox(options());
  ASSERT_EQ(sandbox.start(), std::nullopt);
  Speaker app(sandbox);
  app.setToken("t");
  const Reply seeded = app.send("GET", "/m/v1/orders");
  const auto& order = *seeded.list().at(0).as<Dictionary>();
  EXPECT_EQ(order.find("site_name")->second, Value("Corner"));
  EXPECT_EQ(order.find("state")->second, Value("created"));
  app.send("POST", "/sandbox/orders/1001/cancelled");
  app.send("PUT", "/sandbox/minimum-app-version/9");
  app.send("POST", "/sandbox/reset");
  EXPECT_EQ(app.send("GET", "/m/v1/orders").body, seeded.body);
}

TEST_F(SeedFileTest, ASavedFileStartsAnotherService) {
  Sandbox first;
  ASSERT_EQ(first.start(), std::nullopt);
  Speaker app(first);
  leaveTraces(app);
  ASSERT_EQ(first.saveSnapshot(path_.string()), std::nullopt);
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  Sandbox second(options());
  ASSERT_EQ(second.start(), std::nullopt);
  EXPECT_EQ(Speaker(second).send("GET", "/sandbox/snapshot").body,
            app.send("GET", "/sandbox/snapshot").body);
  EXPECT_THAT(first.saveSnapshot("/nowhere/x"),
              testing::Optional(std::string("/nowhere/x cannot be written")));
  EXPECT_THAT(trySnapshotFile("/nowhere/x"), testing::Optional(testing::HasSubstr("/nowhere/x")));
}

TEST_F(SeedFileTest, AnUnusableFileIsToldInASentence) {
  const auto error = [this] { return Sandbox(options()).start().value_or("none"); };
  EXPECT_EQ(error(), path_.string() + " cannot be read");
  EXPECT_EQ(Sandbox({.seedFile = "/"}).start(), "/ cannot be read");
  write("{");
  EXPECT_EQ(error(), path_.string() + " is no valid snapshot: body (Body is not JSON)");
  write(R"({"data":{"orders":[{"site_id":42}]}})");
  EXPECT_EQ(error(), path_.string() +
                         " is no valid snapshot: orders.0.partner_identifier (Partner identifier "
                         "is missing)");
}

}  // namespace
}  // namespace ovinta::sandbox
