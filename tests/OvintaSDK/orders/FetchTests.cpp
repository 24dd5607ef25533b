// Fetching the orders: the split, the outcome and who hears of it, and what is refused.
#include <gmock/gmock.h>

#include <utility>

#include "OvintaSDK/core/Ovinta.h"
#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "tests/support/SDKFixture.h"

namespace ovinta {
namespace {

using test::requiredOrder;
using test::with;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kPath = "m/v1/orders";

std::vector<std::int64_t> ids(const std::optional<OrderList>& orders) {
  std::vector<std::int64_t> ids;
  for (const OrderPtr& order : orders.value()) ids.push_back(order->id);
  return ids;
}

class Fetch : public test::SDKFixture {
 protected:
  struct Outcome {
    std::optional<OrderList> orders;
    ErrorPtr error;
  };

  /// Fetches with a callback that keeps what it receives in `outcomes`.
  void fetch() {
    Ovinta::orders().fetch([this](const auto& orders, const auto& error) {
      outcomes.push_back({orders, error});
    });
  }

  std::vector<Outcome> outcomes;
};

TEST_F(Fetch, SplitsTheOrdersAndKeepsTheirOrder) {
  signIn();
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
  OrdersManager& orders = Ovinta::orders();
  EXPECT_THAT(ids(orders.all()), ElementsAre(1, 2, 3, 4, 5, 6, 7));
  EXPECT_THAT(ids(orders.open()), ElementsAre(2, 4, 7));
  EXPECT_THAT(ids(orders.closed()), ElementsAre(5, 1, 3, 6)) << "without a date: 1970";
  EXPECT_EQ(orders.open()->front(), orders.all()->at(1)) << "the same objects";
}

TEST_F(Fetch, TellsOfASuccessOnceEverythingIsInPlace) {
  signIn();
  answer("GET", kPath, ordersAnswer({requiredOrder(1)}));
  OrdersManager& manager = Ovinta::orders();
  EXPECT_FALSE(manager.all() || manager.open() || manager.closed() || manager.lastFetch());
  manager.fetch([&](const auto& orders, const auto& error) {
    EXPECT_EQ(error, nullptr);
    EXPECT_EQ(orders, manager.all());
    EXPECT_THAT(ids(manager.open()), ElementsAre(1));
    EXPECT_THAT(ids(manager.closed()), IsEmpty());
    EXPECT_THAT(postedNames(), IsEmpty());
    EXPECT_EQ(manager.lastFetch()->date, test::kStart);
    fetch();
  });
  EXPECT_THAT(logLines(), ElementsAre("Getting Orders"));
  drain();
  const auto posted = this->posted(SDKNotification::ordersUpdated);
  ASSERT_EQ(posted.size(), 1u);
  EXPECT_EQ(*posted[0].objectAs<OrderList>(), manager.all());
  EXPECT_EQ(manager.lastFetch()->error, nullptr);
  ASSERT_EQ(outcomes.size(), 1u) << "one fetch is in flight until its callback has returned";
  EXPECT_EQ(outcomes[0].error->localizedDescription(), "Already fetching orders");
}

TEST_F(Fetch, TakesAnEmptyListForAList) {
  signIn();
  fetchOrders({requiredOrder(1)});
  fetchOrders({});
  for (const auto& list :
       {Ovinta::orders().all(), Ovinta::orders().open(), Ovinta::orders().closed()}) {
    EXPECT_THAT(ids(list), IsEmpty());
  }
  const auto posted = this->posted(SDKNotification::ordersUpdated);
  ASSERT_EQ(posted.size(), 2u);
  EXPECT_THAT(*posted[1].objectAs<OrderList>(), IsEmpty());
}

TEST_F(Fetch, KeepsTheListsWhenItFails) {
  signIn();
  fetchOrders({requiredOrder(1)});
  const auto all = Ovinta::orders().all();
  const std::pair<Answer, const char*> failures[] = {
      {Answer::failure("The line is dead."), "The line is dead."},
      {Answer::json(401, ""), "Not authorized"},
      {Answer::json(200, R"({"data":[{"id":1}]})"), "invalid response"},
  };
  advance(std::chrono::seconds(60));
  for (const auto& [failure, message] : failures) {
    forgetNotifications();
    outcomes.clear();
    answer("GET", kPath, failure);
    fetch();
    drain();
    ASSERT_EQ(outcomes.size(), 1u) << "an earlier failure does not stand in the way";
    const ErrorPtr error = outcomes[0].error;
    EXPECT_FALSE(outcomes[0].orders);
    EXPECT_EQ(error->localizedDescription(), message);
    EXPECT_THAT(postedNames(), ElementsAre("ordersError"));
    EXPECT_EQ(*posted(SDKNotification::ordersError)[0].objectAs<ErrorPtr>(), error);
    EXPECT_EQ(Ovinta::orders().lastFetch()->error, error);
    EXPECT_EQ(Ovinta::orders().lastFetch()->date, time.now());
    EXPECT_THAT(logLines(), testing::Contains("Got an error getting orders"));
  }
  EXPECT_EQ(Ovinta::orders().all(), all);
  EXPECT_THAT(ids(Ovinta::orders().open()), ElementsAre(1));
}

TEST_F(Fetch, IsRefusedWithoutACustomerAndThenWithoutABaseURL) {
  const auto expectRefusal = [this](OrdersManagerErrorType type, std::string_view message) {
    outcomes.clear();
    forgetNotifications();
    time.advance(std::chrono::seconds(1));
    fetch();
    ASSERT_EQ(outcomes.size(), 1u) << "inside the call";
    EXPECT_FALSE(outcomes[0].orders);
    const auto* error = dynamic_cast<const OrdersManagerError*>(outcomes[0].error.get());
    ASSERT_NE(error, nullptr);
    EXPECT_EQ(error->type(), type);
    EXPECT_EQ(error->localizedDescription(), message);
    EXPECT_EQ(logLines().back(), message);
    EXPECT_THAT(postedNames(), ElementsAre("ordersError"));
    EXPECT_EQ(posted(SDKNotification::ordersError)[0].objectAs<ErrorPtr>()->get(), error);
    EXPECT_EQ(Ovinta::orders().lastFetch()->error.get(), error);
    EXPECT_EQ(Ovinta::orders().lastFetch()->date, time.now());
  };
  UserDefaultsKey::apiBase.remove();
  expectRefusal(OrdersManagerErrorType::loadingCustomer, "Could not load customer");
  signIn();
  expectRefusal(OrdersManagerErrorType::loadingApiUrl, "Could not load API url");
  drain();
  EXPECT_THAT(requests(), IsEmpty());

  UserDefaultsKey::apiBase.set(std::string(test::kBaseURL));
  fetchOrders({requiredOrder(1)});
  EXPECT_THAT(ids(Ovinta::orders().all()), ElementsAre(1)) << "a refusal blocks nothing";
}

TEST_F(Fetch, IsRefusedQuietlyWhileAnotherIsInFlight) {
  signIn();
  answer("GET", kPath, ordersAnswer({requiredOrder(1)}));
  Ovinta::orders().fetch();
  fetch();
  ASSERT_EQ(outcomes.size(), 1u) << "inside the call";
  const auto* error = dynamic_cast<const OrdersManagerError*>(outcomes[0].error.get());
  ASSERT_NE(error, nullptr);
  EXPECT_EQ(error->type(), OrdersManagerErrorType::alreadyFetching);
  EXPECT_THAT(logLines(), ElementsAre("Getting Orders", "Already fetching orders"));
  EXPECT_THAT(postedNames(), IsEmpty());
  EXPECT_FALSE(Ovinta::orders().lastFetch());

  drain();
  EXPECT_EQ(requests().size(), 1u);
  EXPECT_THAT(postedNames(), ElementsAre("ordersUpdated"));
  fetch();
  drain();
  EXPECT_TRUE(outcomes.at(1).orders) << "done, the fetch makes room for the next";
}

// A base URL that is no URL ends the operation before anything is sent.
TEST_F(Fetch, MakesRoomForTheNextAlsoWhenNoRequestCanBeBuilt) {
  signIn();
  UserDefaultsKey::apiBase.set("no url at all");
  for (std::size_t i = 0; i < 2; ++i) {
    fetch();
    drain();
    EXPECT_EQ(outcomes.at(i).error->localizedDescription(), "invalid URL");
  }
}

}  // namespace
}  // namespace ovinta
