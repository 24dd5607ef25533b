// Fetching the orders: the split, the outcome and who hears of it, and what is refused.
#include <gmock/gmock.h>

#include "tests/OvintaSDK/orders/OrdersFixture.h"

namespace ovinta::test {
namespace {

class Fetch : public OrdersFixture {
 protected:
  Fetch() {
    signIn();
    answer("GET", "m/v1/orders", ordersAnswer({requiredOrder(1)}));
  }

  std::string fetch() {
    orders.fetch(tell());
    return outcome({"told", "posted"});
  }
};

constexpr std::string_view kOrderOne = "all: orders 1; open: orders 1; closed: orders";

TEST_F(Fetch, SplitsTheOrdersAndKeepsTheirOrder) {
  fetchOrders({
      with(requiredOrder(1), {{"state", "completed"}, {"updated_at", "2021-03-04T10:00:00.000Z"}}),
      with(requiredOrder(2), {{"state", "delayed"}}),
      with(requiredOrder(3), {{"state", "cancelled"}}),
      with(requiredOrder(4), {{"state", "ready"}, {"customer_state", "waiting"}}),
      with(requiredOrder(5), {{"state", "ready"},
                              {"customer_state", "completed"},
                              {"updated_at", "2021-03-04T11:00:00.000Z"}}),
      with(requiredOrder(6), {{"state", "gone"}, {"updated_at", "1969-12-31T23:59:59.000Z"}}),
      requiredOrder(7),
  });
  // An order without a date is of 1970.
  EXPECT_EQ(lists(), "all: orders 1 2 3 4 5 6 7; open: orders 2 4 7; closed: orders 5 1 3 6");
  EXPECT_EQ(orders.open()->front(), order(1)) << "the same objects";
  fetchOrders({});
  EXPECT_EQ(lists(), "all: orders; open: orders; closed: orders") << "empty, not absent";
  EXPECT_THAT(happened({"posted"}), testing::EndsWith("\nposted ordersUpdated orders"));
}

TEST_F(Fetch, TellsOfASuccessOnceEverythingIsInPlace) {
  EXPECT_EQ(lists(), kNoLists);
  orders.fetch([this](const auto& received, const auto& error) {
    tell()(received, error);
    EXPECT_EQ(lists(), kOrderOne);
    EXPECT_EQ(lastFetch(), "0 s, ");
    orders.fetch(tell());
  });
  orders.fetch(tell());
  const std::string refusal =
      "\nlog Already fetching orders\ntold Error with Orders Manager: Already fetching orders";
  EXPECT_EQ(happened(), "\nlog Getting Orders" + refusal) << "inside the call";
  EXPECT_EQ(lastFetch(), "none");
  const std::string all = outcome();
  EXPECT_EQ(all.substr(0, all.find("\nlog Container")),
            "\nGET m/v1/orders as customer-token\ntold orders 1" + refusal +
                "\nposted ordersUpdated orders 1")
      << "one fetch is in flight until its callback has returned";
  EXPECT_EQ(lastFetch(), "0 s, ");
}

TEST_F(Fetch, KeepsTheListsWhenItFails) {
  fetch();
  advance(std::chrono::seconds(60));
  const std::pair<Answer, std::string> failures[] = {
      {Answer::failure("The line is dead."), "The line is dead."},
      {Answer::json(401, ""), "Not authorized"},
      {Answer::json(200, R"({"data":[{"id":1}]})"), "invalid response"},
  };
  for (const auto& [failure, message] : failures) {
    answer("GET", "m/v1/orders", failure);
    const std::string error = "Error Getting Orders: " + message;
    EXPECT_EQ(fetch(), "\ntold " + error + "\nposted ordersError " + error);
    EXPECT_EQ(logLines().back(), "Got an error getting orders");
    EXPECT_EQ(lastFetch(), "60 s, " + error);
    EXPECT_EQ(lists(), kOrderOne);
  }
  // A base URL that is no URL ends the operation before anything is sent.
  UserDefaultsKey::apiBase.set("no url at all");
  const std::string error = "Error Getting Orders: invalid URL";
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(fetch(), "\ntold " + error + "\nposted ordersError " + error);
  }
}

TEST_F(Fetch, IsRefusedWithoutACustomerAndThenWithoutABaseURL) {
  const auto expectRefusal = [this](const std::string& message) {
    const std::string error = "Error with Orders Manager: " + message;
    time.advance(std::chrono::seconds(1));
    orders.fetch(tell());
    EXPECT_EQ(happened(), "\nlog " + message + "\ntold " + error + "\nposted ordersError " + error)
        << "inside the call";
    EXPECT_THAT(lastFetch(), testing::EndsWith(" s, " + error));
  };
  Ovinta::customer().setCurrent(nullptr);
  UserDefaultsKey::apiBase.remove();
  expectRefusal("Could not load customer");
  signIn();
  expectRefusal("Could not load API url");
  EXPECT_THAT(lastFetch(), testing::StartsWith("2 s, "));
  useBaseURL();
  fetch();
  EXPECT_EQ(lists(), kOrderOne) << "a refusal blocks nothing";
}

}  // namespace
}  // namespace ovinta::test
