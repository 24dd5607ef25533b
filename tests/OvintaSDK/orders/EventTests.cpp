// Order events: what is sent, and what an answer changes in the orders at hand.
#include <gmock/gmock.h>

#include "tests/OvintaSDK/orders/OrdersFixture.h"

namespace ovinta::test {
namespace {

class Event : public OrdersFixture {
 protected:
  Event() {
    signIn();
    fetchOrders({requiredOrder(7), with(requiredOrder(8), {{"customer_rating_value_string", "4"},
                                                           {"customer_rating_comments", "Good"}})});
    happened();
  }

  /// What follows the sending.
  std::string followUp() { return outcome({"log", "posted", "told"}); }
};

TEST_F(Event, SaysWhatHappened) {
  orders.event(*order(0), CustomerState::enRoute);
  orders.event(70, CustomerState::arrived);
  orders.event(70, OrderState::cancelled);
  orders.rateOrder(70, 5, std::nullopt);
  orders.rateOrder(70, -1, "Slow");
  const std::string start = "\nPOST m/v1/events as customer-token {\"order_id\":";
  EXPECT_EQ(outcome({"POST"}),
            start + R"(7,"event_type":"state_change","customer_state":"en_route"})" + start +
                R"(70,"event_type":"state_change","customer_state":"arrived"})" + start +
                R"(70,"event_type":"state_change","state":"cancelled"})" + start +
                R"(70,"event_type":"customer_rating","customer_rating_value":5})" + start +
                R"(70,"event_type":"customer_rating","customer_rating_value":-1,)"
                R"("customer_rating_comments":"Slow"})");
}

TEST_F(Event, ChangesTheOrderWhenAccepted) {
  fetchOrders({requiredOrder(7), requiredOrder(7)});
  happened();
  orders.event(7, CustomerState::arrived, tell());
  EXPECT_EQ(order(0)->customerState(), CustomerState::created) << "not before the answer";
  EXPECT_EQ(followUp(), R"(
log Successfully created order event
posted orderUpdated order 7
told order 7)");
  EXPECT_EQ(order(0)->customerState(), CustomerState::arrived);
  EXPECT_EQ(order(1)->customerState(), CustomerState::created) << "the first of its number";
}

TEST_F(Event, TakesAFinishedOrderOutOfTheOpenOnesAlone) {
  orders.event(7, OrderState::completed);
  drain();
  EXPECT_EQ(lists(), "all: orders 7 8; open: orders 8; closed: orders");
  orders.event(8, CustomerState::completed);
  drain();
  EXPECT_EQ(lists(), "all: orders 7 8; open: orders; closed: orders")
      << "the closed ones wait for the next fetch";
  orders.event(7, OrderState::ready);
  EXPECT_THAT(outcome(), testing::Not(testing::HasSubstr("Finished syncing orders")))
      << "and so does the store";
  EXPECT_EQ(lists(), "all: orders 7 8; open: orders 7; closed: orders") << "any state may follow";
}

TEST_F(Event, IsAnnouncedOnlyWhenItChangesAnOrderAtHand) {
  const auto send = [this](const auto& event) {
    event();
    return outcome({"posted", "told"});
  };
  const std::string seven = "\ntold order 7";
  const std::string eight = "\ntold order 8";
  const std::string changedEight = "\nposted orderUpdated order 8" + eight;
  EXPECT_EQ(send([&] { orders.event(7, CustomerState::created, tell()); }), seven);
  EXPECT_EQ(send([&] { orders.event(7, OrderState::created, tell()); }), seven);
  EXPECT_EQ(send([&] { orders.event(70, OrderState::ready, tell()); }), "\ntold nothing");
  EXPECT_EQ(send([&] { orders.rateOrder(7, 5, std::nullopt, tell()); }),
            "\nposted orderUpdated order 7" + seven);
  EXPECT_EQ(send([&] { orders.rateOrder(8, 4, "Good", tell()); }), eight) << "the same rating";
  EXPECT_EQ(send([&] { orders.rateOrder(8, 4, "Fair", tell()); }), changedEight);
  EXPECT_EQ(send([&] { orders.rateOrder(8, 3, std::nullopt, tell()); }), changedEight);
  EXPECT_EQ(order(0)->customerRating(), "5");
  EXPECT_EQ(order(0)->customerComment(), std::nullopt);
  EXPECT_EQ(order(1)->customerRating(), "3");
  EXPECT_EQ(order(1)->customerComment(), "Fair");
}

TEST_F(Event, LeavesTheOrderAloneWhenRefused) {
  const std::pair<Answer, std::string> refusals[] = {
      {Answer::json(422, R"({"errors":{"state":["is final"]}})"), "is final"},
      {Answer::failure("The line is dead."), "The line is dead."}};
  for (const auto& [refusal, message] : refusals) {
    answer("POST", "m/v1/events", refusal);
    orders.event(7, OrderState::completed, tell());
    const std::string error = "Error Creating Order Event: " + message;
    EXPECT_EQ(followUp(), "\nlog Got an error creating order event\nposted orderEventError " +
                              error + "\ntold order 7, " + error);
    EXPECT_EQ(order(0)->state(), OrderState::created);
    EXPECT_EQ(lists(), "all: orders 7 8; open: orders 7 8; closed: orders");
  }
}

TEST_F(Event, ClosesAnOrderThatIsGoneWithoutAWordToTheCaller) {
  answer("POST", "m/v1/events", Answer::json(410, R"({"errors":{"order":["is gone"]}})"));
  orders.event(70, CustomerState::arrived, tell());
  EXPECT_EQ(followUp(), "") << "not at hand";
  orders.event(7, CustomerState::arrived, tell());
  EXPECT_EQ(followUp(), "\nposted orderUpdated order 7");
  EXPECT_EQ(order(0)->state(), OrderState::gone);
  EXPECT_EQ(order(0)->customerState(), CustomerState::created);
  EXPECT_EQ(lists(), "all: orders 7 8; open: orders 8; closed: orders");
}

TEST_F(Event, IsDroppedWithoutABaseURLOrACustomer) {
  const auto expectNothing = [this] {
    orders.event(*order(0), CustomerState::arrived, tell());
    orders.event(7, OrderState::ready, tell());
    orders.rateOrder(7, 5, std::nullopt, tell());
    EXPECT_EQ(outcome(), "");
  };
  UserDefaultsKey::apiBase.remove();
  expectNothing();
  useBaseURL();
  Ovinta::customer().setCurrent(nullptr);
  expectNothing();
}

}  // namespace
}  // namespace ovinta::test
