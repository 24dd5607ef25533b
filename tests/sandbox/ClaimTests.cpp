#include "tests/sandbox/SandboxFixture.h"

namespace ovinta::sandbox {
namespace {

class ClaimTest : public SandboxTest {
 protected:
  /// Has the merchant create an order, and answers its redemption code.
  std::string offer(const std::string& more = {}) {
    const Reply reply = Speaker(sandbox).send(
        "POST", "/sandbox/orders", R"({"site_id":43,"partner_identifier":"B-7")" + more + "}");
    EXPECT_EQ(reply.status, 200) << reply.body;
    return reply.text("redemption_code");
  }
};

TEST_F(ClaimTest, TheCodeFindsTheOrderAndMakesItTheCustomers) {
  const std::string code = offer(R"(,"customer_car_color":"red")");
  Speaker app(sandbox);
  const Reply found = app.send("GET", "/m/v1/orders/" + code + "/edit");
  ASSERT_EQ(found.status, 200);
  app.becomeCustomer();
  EXPECT_EQ(app.send("GET", "/m/v1/orders").list(), List{});
  advance(std::chrono::seconds(1));
  const Reply claimed = app.send("PUT", "/m/v1/orders/" + code,
                                 R"({"push_token":null,"customer_car_type":"SUV",
                                     "pickup_type":"in_store"})");
  Dictionary expected = found.record();
  for (const auto& [key, value] : Dictionary{{"customer_name", "Ann"},
                                             {"customer_car_type", "SUV"},
                                             {"pickup_type", "in_store"},
                                             {"redeemed_at", "2024-05-01T12:00:01.007Z"},
                                             {"updated_at", "2024-05-01T12:00:01.007Z"}}) {
    expected.insert_or_assign(key, value);
  }
  EXPECT_EQ(claimed.record(), expected);
  EXPECT_EQ(app.send("GET", "/m/v1/orders").list(), List{expected});

  app.becomeCustomer();
  const Reply late = app.send("PUT", "/m/v1/orders/" + code, R"({"push_token":"x"})");
  EXPECT_EQ(late.status, 404);
  EXPECT_THAT(late.body, testing::HasSubstr("another customer's"));
}

TEST_F(ClaimTest, OrdersThatAreOverAndUnknownCodesCannotBeClaimed) {
  Speaker app(sandbox);
  app.becomeCustomer();
  const struct {
    const char* state;
    int lookUp;
    int claim;
  } kCases[] = {{"cancelled", 200, 422}, {"completed", 200, 422}, {"gone", 410, 410}};
  for (const auto& test : kCases) {
    const std::string path =
        "/m/v1/orders/" + offer(R"(,"state":")" + std::string(test.state) + "\"");
    EXPECT_EQ(app.send("GET", path + "/edit").status, test.lookUp) << test.state;
    EXPECT_EQ(app.send("PUT", path, R"({"push_token":"x"})").status, test.claim) << test.state;
  }
  EXPECT_EQ(app.send("GET", "/m/v1/orders/NOCODE/edit").status, 404);
  EXPECT_EQ(app.send("PUT", "/m/v1/orders/NOCODE", R"({"push_token":"x"})").status, 404);
  const Reply faulty = app.send("POST", "/sandbox/orders", R"({"site_id":7})");
  EXPECT_EQ(faulty.status, 422);
  EXPECT_THAT(faulty.body, testing::HasSubstr("Partner identifier is missing"));
}

}  // namespace
}  // namespace ovinta::sandbox
