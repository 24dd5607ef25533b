// Fetching the orders: the split, the outcome and who hears of it, and what is refused.
#include <gmock/gmock.h>

#include "OvintaSDK/core/facade/Library.h"
#include "tests/OvintaSDK/orders/OrdersFixture.h"

namespace ovinta::test {
namespace {

class Fetch : public OrdersFixture {
 protected:
  Fetch() {
    signIn();
    answer("GET", "m/v1/orders", ordersAnswer({requiredOrder(1)}));
  }

  Steps fetch() {
    orders.fetch(tell());
    return outcome({Step::told, Step::posted});
  }

  /// What comes of a fetch that fails.
  static Steps failed(const Item& error) {
    return {told(error), posted(SDKNotification::ordersError, error)};
  }

  const Lists orderOne = listsOf({1}, {1}, {});
};

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
  EXPECT_EQ(lists(), listsOf({1, 2, 3, 4, 5, 6, 7}, {2, 4, 7}, {5, 1, 3, 6}));
  EXPECT_EQ(orders.open()->front(), order(1)) << "the same objects";
  fetchOrders({});
  EXPECT_EQ(lists(), listsOf({}, {}, {})) << "empty, not absent";
  EXPECT_THAT(happened({Step::posted}),
              are(posted(SDKNotification::ordersUpdated, theOrders({1, 2, 3, 4, 5, 6, 7})),
                  posted(SDKNotification::ordersUpdated, theOrders({}))));
}

TEST_F(Fetch, TellsOfASuccessOnceEverythingIsInPlace) {
  EXPECT_EQ(lists(), noLists);
  orders.fetch([this](const auto& received, const auto& error) {
    tell()(received, error);
    EXPECT_EQ(lists(), orderOne);
    EXPECT_EQ(lastFetch(), End(0, {}));
    orders.fetch(tell());
  });
  orders.fetch(tell());
  const Steps refusal = refused(Title::orders, Message::alreadyFetching);
  EXPECT_THAT(happened(), are(logged(Line::gettingOrders), refusal)) << "inside the call";
  EXPECT_EQ(lastFetch(), std::nullopt);
  // The store is made on the first use, which is told in the log.
  Library::process().context()->persistentContainer();
  happened();
  EXPECT_THAT(outcome(),
              are(requestedOrders, told(theOrders({1})), refusal,
                  posted(SDKNotification::ordersUpdated, theOrders({1})), logged(Line::synced)))
      << "one fetch is in flight until its callback has returned";
  EXPECT_EQ(lastFetch(), End(0, {}));
}

TEST_F(Fetch, KeepsTheListsWhenItFails) {
  fetch();
  advance(std::chrono::seconds(60));
  const std::pair<Answer, const char*> failures[] = {
      {Answer::failure("The line is dead."), "The line is dead."},
      {Answer::json(401, ""), Message::notAuthorized},
      {Answer::json(200, R"({"data":[{"id":1}]})"), Message::unreadable},
  };
  for (const auto& [failure, message] : failures) {
    answer("GET", "m/v1/orders", failure);
    const Item error = theError(Title::getOrders, message);
    EXPECT_THAT(fetch(), are(failed(error)));
    EXPECT_EQ(logLines().back(), Line::noOrders);
    EXPECT_EQ(lastFetch(), End(60, error));
    EXPECT_EQ(lists(), orderOne);
  }
  // A base URL that is no URL ends the operation before anything is sent.
  UserDefaultsKey::apiBase.set("no url at all");
  for (int i = 0; i < 2; ++i) {
    EXPECT_THAT(fetch(), are(failed(theError(Title::getOrders, Message::invalidURL))));
  }
}

TEST_F(Fetch, IsRefusedWithoutACustomerAndThenWithoutABaseURL) {
  const auto expectRefusal = [this](const char* message, std::int64_t seconds) {
    const Item error = theError(Title::orders, message);
    time.advance(std::chrono::seconds(1));
    orders.fetch(tell());
    EXPECT_THAT(happened(), are(logged(message), failed(error))) << "inside the call";
    EXPECT_EQ(lastFetch(), End(seconds, error));
  };
  Ovinta::customer().setCurrent(nullptr);
  UserDefaultsKey::apiBase.remove();
  expectRefusal(Message::noCustomer, 1);
  signIn();
  expectRefusal(Message::noURL, 2);
  useBaseURL();
  fetch();
  EXPECT_EQ(lists(), orderOne) << "a refusal blocks nothing";
}

}  // namespace
}  // namespace ovinta::test
