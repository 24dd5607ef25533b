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
  Steps followUp() { return outcome({Step::logged, Step::posted, Step::told}); }

  static Step changed(std::int64_t id) {
    return posted(SDKNotification::orderUpdated, theOrder(id));
  }
};

TEST_F(Event, SaysWhatHappened) {
  orders.event(*order(0), CustomerState::enRoute);
  orders.event(70, CustomerState::arrived);
  orders.event(70, OrderState::cancelled);
  orders.rateOrder(70, 5, std::nullopt);
  orders.rateOrder(70, -1, "Slow");
  const auto sent = [](const std::string& id, const std::string& event) {
    return requested("POST", "m/v1/events", kToken,
                     R"({"order_id":)" + id + R"(,"event_type":)" + event + "}");
  };
  EXPECT_THAT(outcome({Step::requested}),
              are(sent("7", R"("state_change","customer_state":"en_route")"),
                  sent("70", R"("state_change","customer_state":"arrived")"),
                  sent("70", R"("state_change","state":"cancelled")"),
                  sent("70", R"("customer_rating","customer_rating_value":5)"),
                  sent("70", R"("customer_rating","customer_rating_value":-1,)"
                             R"("customer_rating_comments":"Slow")")));
}

TEST_F(Event, ChangesTheOrderWhenAccepted) {
  fetchOrders({requiredOrder(7), requiredOrder(7)});
  happened();
  orders.event(7, CustomerState::arrived, tell());
  EXPECT_EQ(order(0)->customerState(), CustomerState::created) << "not before the answer";
  EXPECT_THAT(followUp(), are(logged(Line::eventAccepted), changed(7), told(theOrder(7))));
  EXPECT_EQ(order(0)->customerState(), CustomerState::arrived);
  EXPECT_EQ(order(1)->customerState(), CustomerState::created) << "the first of its number";
}

TEST_F(Event, TakesAFinishedOrderOutOfTheOpenOnesAlone) {
  orders.event(7, OrderState::completed);
  drain();
  EXPECT_EQ(lists(), listsOf({7, 8}, {8}, {}));
  orders.event(8, CustomerState::completed);
  drain();
  EXPECT_EQ(lists(), listsOf({7, 8}, {}, {})) << "the closed ones wait for the next fetch";
  orders.event(7, OrderState::ready);
  EXPECT_THAT(outcome(), testing::Not(testing::Contains(logged(Line::synced))))
      << "and so does the store";
  EXPECT_EQ(lists(), listsOf({7, 8}, {7}, {})) << "any state may follow";
}

TEST_F(Event, IsAnnouncedOnlyWhenItChangesAnOrderAtHand) {
  const auto send = [this](const auto& event) {
    event();
    return outcome({Step::posted, Step::told});
  };
  const Step seven = told(theOrder(7));
  const Step eight = told(theOrder(8));
  EXPECT_THAT(send([&] { orders.event(7, CustomerState::created, tell()); }), are(seven));
  EXPECT_THAT(send([&] { orders.event(7, OrderState::created, tell()); }), are(seven));
  EXPECT_THAT(send([&] { orders.event(70, OrderState::ready, tell()); }), are(told()));
  EXPECT_THAT(send([&] { orders.rateOrder(7, 5, std::nullopt, tell()); }), are(changed(7), seven));
  EXPECT_THAT(send([&] { orders.rateOrder(8, 4, "Good", tell()); }), are(eight))
      << "the same rating";
  EXPECT_THAT(send([&] { orders.rateOrder(8, 4, "Fair", tell()); }), are(changed(8), eight));
  EXPECT_THAT(send([&] { orders.rateOrder(8, 3, std::nullopt, tell()); }), are(changed(8), eight));
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
    const Item error = theError(Title::createEvent, message);
    EXPECT_THAT(followUp(),
                are(logged(Line::eventRefused), posted(SDKNotification::orderEventError, error),
                    told(theOrder(7), error)));
    EXPECT_EQ(order(0)->state(), OrderState::created);
    EXPECT_EQ(lists(), listsOf({7, 8}, {7, 8}, {}));
  }
}

TEST_F(Event, ClosesAnOrderThatIsGoneWithoutAWordToTheCaller) {
  answer("POST", "m/v1/events", Answer::json(410, R"({"errors":{"order":["is gone"]}})"));
  orders.event(70, CustomerState::arrived, tell());
  EXPECT_THAT(followUp(), are()) << "not at hand";
  orders.event(7, CustomerState::arrived, tell());
  EXPECT_THAT(followUp(), are(changed(7)));
  EXPECT_EQ(order(0)->state(), OrderState::gone);
  EXPECT_EQ(order(0)->customerState(), CustomerState::created);
  EXPECT_EQ(lists(), listsOf({7, 8}, {8}, {}));
}

TEST_F(Event, IsDroppedWithoutABaseURLOrACustomer) {
  const auto expectNothing = [this] {
    orders.event(*order(0), CustomerState::arrived, tell());
    orders.event(7, OrderState::ready, tell());
    orders.rateOrder(7, 5, std::nullopt, tell());
    EXPECT_THAT(outcome(), are());
  };
  UserDefaultsKey::apiBase.remove();
  expectNothing();
  useBaseURL();
  Ovinta::customer().setCurrent(nullptr);
  expectNothing();
}

}  // namespace
}  // namespace ovinta::test
