// Order events: what is sent, and what an answer changes in the orders at hand.
#include <gmock/gmock.h>

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

constexpr std::string_view kPath = "m/v1/events";

class Event : public test::SDKFixture {
 protected:
  Event() {
    signIn();
    fetchOrders({requiredOrder(7), with(requiredOrder(8), {{"customer_rating_value_string", "4"},
                                                           {"customer_rating_comments", "Good"}})});
    forgetNotifications();
    answer("POST", kPath, Answer::json(200, ""));
  }

  OrderCallback keep() {
    return [this](const auto& order, const auto& error) {
      outcomes.push_back({order, error, postedNames()});
    };
  }

  static OrderPtr order(std::size_t index) { return Ovinta::orders().all()->at(index); }

  struct Outcome {
    OrderPtr order;
    ErrorPtr error;
    /// What had been posted when the callback was called.
    std::vector<std::string> postedBefore;
  };

  std::vector<Outcome> outcomes;
};

TEST_F(Event, SaysWhatHappened) {
  OrdersManager& orders = Ovinta::orders();
  orders.event(*order(0), CustomerState::enRoute);
  orders.event(70, CustomerState::arrived);
  orders.event(70, OrderState::cancelled);
  orders.rateOrder(70, 5, std::nullopt);
  orders.rateOrder(70, -1, "Slow");
  drain();
  EXPECT_THAT(
      bodies("POST", kPath),
      ElementsAre(
          R"({"data":{"order_id":7,"event_type":"state_change","customer_state":"en_route"}})",
          R"({"data":{"order_id":70,"event_type":"state_change","customer_state":"arrived"}})",
          R"({"data":{"order_id":70,"event_type":"state_change","state":"cancelled"}})",
          R"({"data":{"order_id":70,"event_type":"customer_rating","customer_rating_value":5}})",
          R"({"data":{"order_id":70,"event_type":"customer_rating","customer_rating_value":-1,)"
          R"("customer_rating_comments":"Slow"}})"));
}

TEST_F(Event, ChangesTheOrderWhenAccepted) {
  Ovinta::orders().event(7, CustomerState::arrived, keep());
  EXPECT_EQ(order(0)->customerState(), CustomerState::created) << "not before the answer";
  drain();
  ASSERT_EQ(outcomes.size(), 1u);
  EXPECT_EQ(outcomes[0].order, order(0));
  EXPECT_EQ(outcomes[0].error, nullptr);
  EXPECT_EQ(order(0)->customerState(), CustomerState::arrived);
  EXPECT_THAT(outcomes[0].postedBefore, ElementsAre("orderUpdated"));
  EXPECT_EQ(*posted(SDKNotification::orderUpdated)[0].objectAs<OrderPtr>(), order(0));
  EXPECT_EQ(logLines().back(), "Successfully created order event");
}

TEST_F(Event, TakesAFinishedOrderOutOfTheOpenOnesAlone) {
  const OrderPtr first = order(0);
  const OrderPtr second = order(1);
  Ovinta::orders().event(7, OrderState::completed);
  drain();
  EXPECT_THAT(Ovinta::orders().open().value(), ElementsAre(second));
  Ovinta::orders().event(8, CustomerState::completed);
  drain();
  EXPECT_THAT(Ovinta::orders().open().value(), IsEmpty());
  EXPECT_THAT(Ovinta::orders().all().value(), ElementsAre(first, second));
  EXPECT_THAT(Ovinta::orders().closed().value(), IsEmpty()) << "they wait for the next fetch";
  EXPECT_EQ(std::ranges::count(logLines(), "Finished syncing orders"), 1) << "and so the store";

  Ovinta::orders().event(7, OrderState::ready);
  drain();
  EXPECT_THAT(Ovinta::orders().open().value(), ElementsAre(first)) << "any state may follow";
}

TEST_F(Event, IsAnnouncedOnlyWhenItChangesAnOrderAtHand) {
  struct Row {
    const char* what;
    std::function<void(const OrderCallback&)> send;
    bool isAtHand;
    bool changes;
  };
  OrdersManager& orders = Ovinta::orders();
  const Row rows[] = {
      {"same customer state", [&](auto& keep) { orders.event(7, CustomerState::created, keep); },
       true, false},
      {"same state", [&](auto& keep) { orders.event(7, OrderState::created, keep); }, true, false},
      {"unknown order", [&](auto& keep) { orders.event(70, OrderState::ready, keep); }, false,
       false},
      {"first rating", [&](auto& keep) { orders.rateOrder(7, 5, std::nullopt, keep); }, true, true},
      {"same rating", [&](auto& keep) { orders.rateOrder(8, 4, "Good", keep); }, true, false},
      {"other comment", [&](auto& keep) { orders.rateOrder(8, 4, "Fair", keep); }, true, true},
      {"other rating", [&](auto& keep) { orders.rateOrder(8, 3, std::nullopt, keep); }, true, true},
  };
  for (const Row& row : rows) {
    outcomes.clear();
    forgetNotifications();
    row.send(keep());
    drain();
    ASSERT_EQ(outcomes.size(), 1u) << row.what;
    EXPECT_EQ(outcomes[0].order != nullptr, row.isAtHand) << row.what;
    EXPECT_EQ(outcomes[0].error, nullptr) << row.what;
    EXPECT_EQ(postedNames().size(), row.changes ? 1u : 0u) << row.what;
  }
  EXPECT_EQ(order(0)->customerRating(), "5");
  EXPECT_EQ(order(0)->customerComment(), std::nullopt);
  EXPECT_EQ(order(1)->customerRating(), "3");
  EXPECT_EQ(order(1)->customerComment(), "Fair");
}

TEST_F(Event, LeavesTheOrderAloneWhenRefused) {
  for (const auto& refusal : {Answer::json(422, R"({"errors":{"state":["is final"]}})"),
                              Answer::failure("The line is dead.")}) {
    outcomes.clear();
    forgetNotifications();
    answer("POST", kPath, refusal);
    Ovinta::orders().event(7, OrderState::completed, keep());
    drain();
    ASSERT_EQ(outcomes.size(), 1u);
    EXPECT_EQ(outcomes[0].order, order(0));
    ASSERT_NE(outcomes[0].error, nullptr);
    EXPECT_THAT(postedNames(), ElementsAre("orderEventError"));
    EXPECT_THAT(outcomes[0].postedBefore, ElementsAre("orderEventError"));
    EXPECT_EQ(*posted(SDKNotification::orderEventError)[0].objectAs<ErrorPtr>(), outcomes[0].error);
    EXPECT_EQ(logLines().back(), "Got an error creating order event");
    EXPECT_EQ(order(0)->state(), OrderState::created);
    EXPECT_EQ(Ovinta::orders().open()->size(), 2u);
  }
}

TEST_F(Event, ClosesAnOrderThatIsGone) {
  answer("POST", kPath, Answer::json(410, R"({"errors":{"order":["is gone"]}})"));
  Ovinta::orders().event(70, CustomerState::arrived, keep());
  drain();
  EXPECT_THAT(postedNames(), IsEmpty()) << "not at hand";
  const std::size_t lines = logLines().size();
  Ovinta::orders().event(7, CustomerState::arrived, keep());
  drain();
  EXPECT_EQ(order(0)->state(), OrderState::gone);
  EXPECT_EQ(order(0)->customerState(), CustomerState::created);
  EXPECT_THAT(Ovinta::orders().open().value(), ElementsAre(order(1)));
  EXPECT_THAT(postedNames(), ElementsAre("orderUpdated"));
  EXPECT_EQ(*posted(SDKNotification::orderUpdated)[0].objectAs<OrderPtr>(), order(0));
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_EQ(logLines().size(), lines);
}

TEST_F(Event, IsDroppedWithoutABaseURLOrACustomer) {
  const auto lines = logLines();
  const auto send = [this] {
    Ovinta::orders().event(*order(0), CustomerState::arrived, keep());
    Ovinta::orders().event(7, OrderState::ready, keep());
    Ovinta::orders().rateOrder(7, 5, std::nullopt, keep());
    drain();
  };
  UserDefaultsKey::apiBase.remove();
  send();
  UserDefaultsKey::apiBase.set(std::string(test::kBaseURL));
  Ovinta::customer().setCurrent(nullptr);
  send();
  EXPECT_THAT(bodies("POST", kPath), IsEmpty());
  EXPECT_THAT(outcomes, IsEmpty());
  EXPECT_THAT(postedNames(), IsEmpty());
  EXPECT_EQ(logLines(), lines);
}

TEST_F(Event, FindsTheFirstOrderOfItsNumber) {
  fetchOrders({requiredOrder(7), requiredOrder(7)});
  Ovinta::orders().event(7, OrderState::ready);
  drain();
  EXPECT_EQ(order(0)->state(), OrderState::ready);
  EXPECT_EQ(order(1)->state(), OrderState::created);
}

}  // namespace
}  // namespace ovinta
