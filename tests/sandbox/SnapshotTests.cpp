#include <filesystem>

#include "sandbox/domain/SnapshotFile.h"
#include "tests/sandbox/SandboxFixture.h"
#include "tests/support/Files.h"
#include "tests/support/TemporaryDirectory.h"

namespace ovinta::sandbox {
namespace {

namespace fs = std::filesystem;

/// Leaves traces of every kind: an account with a pending reset, an order under way, one to claim.
void leaveTraces(Speaker& app) {
  app.becomeCustomer();
  app.signUp("a@b.c");
  app.send("POST", "/m/v1/customer/password", R"({"email":"a@b.c"})");
  app.createOrder();
  app.send("POST", "/m/v1/events", R"({"order_id":1001,"event_type":"location_update",
                                       "longitude":-74,"latitude":40.5})");
  app.send("POST", "/m/v1/events", R"({"order_id":1001,"event_type":"customer_rating",
                                       "customer_rating_value":4})");
  app.send("POST", "/sandbox/orders", R"({"site_id":43,"partner_identifier":"B"})");
}

using SnapshotTest = SandboxTest;

TEST_F(SnapshotTest, RestoringBringsBackEverythingAndWhatIsMadeNext) {
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

TEST_F(SnapshotTest, TellsNoMoreFaultsThanPeopleRead) {
  std::string records = "0";
  for (int index = 1; index < 1000; ++index) records += ",0";
  const Reply refused = app.send("PUT", "/sandbox/snapshot", R"({"orders":[)" + records + "]}");
  EXPECT_EQ(refused.status, 422);
  EXPECT_EQ(refused.errors.size(), 100u);
}

class SeedFileTest : public SandboxTest {
 protected:
  Options options() const { return {.seedFile = path_.string()}; }

  const test::TemporaryDirectory directory_;
  const fs::path path_ = directory_.path() / "seed.json";
};

TEST_F(SeedFileTest, AShortFileIsFilledUpAndIsWhatAResetLeadsTo) {
  test::writeFile(
      path_,
      R"({"data":{"sites":[{"id":7,"name":"Corner"}],"customers":[{"name":"Ann","api_token":"t"}],
            "orders":[{"site_id":7,"partner_identifier":"A","customer_token":"t"}]}})");
  Sandbox seeded(options());
  ASSERT_EQ(seeded.start(), std::nullopt);
  Speaker speaker(seeded);
  speaker.setToken("t");
  const Reply orders = speaker.send("GET", "/m/v1/orders");
  const auto& order = *orders.list().at(0).as<Dictionary>();
  EXPECT_EQ(order.find("site_name")->second, Value("Corner"));
  EXPECT_EQ(order.find("state")->second, Value("created"));
  speaker.send("POST", "/sandbox/orders/1001/cancelled");
  speaker.send("PUT", "/sandbox/minimum-app-version/9");
  speaker.send("POST", "/sandbox/reset");
  EXPECT_EQ(speaker.send("GET", "/m/v1/orders").body, orders.body);
}

TEST_F(SeedFileTest, ASavedFileStartsAnotherService) {
  leaveTraces(app);
  ASSERT_EQ(sandbox.saveSnapshot(path_.string()), std::nullopt);
  EXPECT_EQ(fs::status(path_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  Sandbox second(options());
  ASSERT_EQ(second.start(), std::nullopt);
  EXPECT_EQ(Speaker(second).send("GET", "/sandbox/snapshot").body,
            app.send("GET", "/sandbox/snapshot").body);
  EXPECT_THAT(sandbox.saveSnapshot("/nowhere/x"),
              testing::Optional(std::string("/nowhere/x cannot be written")));
  EXPECT_THAT(trySnapshotFile("/nowhere/x"), testing::Optional(testing::HasSubstr("/nowhere/x")));
}

TEST_F(SeedFileTest, AnUnusableFileIsToldInASentence) {
  const auto error = [this] { return Sandbox(options()).start().value_or("none"); };
  EXPECT_EQ(error(), path_.string() + " cannot be read");
  EXPECT_EQ(Sandbox({.seedFile = "/"}).start(), "/ cannot be read");
  test::writeFile(path_, "{");
  EXPECT_EQ(error(), path_.string() + " is no valid snapshot: body (Body is not JSON)");
  test::writeFile(path_, R"({"data":{"orders":[{"site_id":42}]}})");
  EXPECT_EQ(error(), path_.string() +
                         " is no valid snapshot: orders.0.partner_identifier (Partner identifier "
                         "is missing)");
}

}  // namespace
}  // namespace ovinta::sandbox
