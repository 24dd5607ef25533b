// Libraries of their own, and managers that go before their requests do.
#include <gmock/gmock.h>

#include <functional>
#include <memory>

#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "platform/portable/Portable.h"
#include "tests/support/SDKFixture.h"

namespace ovinta::test {
namespace {

using LibraryTest = SDKFixture;
using platform::simulation::Answer;
using platform::simulation::AnsweringURLSession;

/// A library on services of its own, with a customer.
struct Store {
  Store(platform::Services shared, std::string_view token) : services(std::move(shared)) {
    services.settings = platform::portable::makeInMemorySettingsStore();
    services.notificationCenter = platform::portable::makeNotificationCenter();
    services.urlSession = http;
    services.settings->set(UserDefaultsKey::apiBase.rawValue(), "https://" + std::string(token));
    Customer customer = test::customer();
    customer.token = token;
    library.customer().setCurrent(std::make_shared<const Customer>(customer));
    observer = services.notificationCenter->addObserver(SDKNotification::ordersUpdated,
                                                        [this](const auto&) { ++updates; });
  }

  platform::Services services;
  std::shared_ptr<AnsweringURLSession> http =
      std::make_shared<AnsweringURLSession>([](const platform::URLRequest& request) {
        const auto order = requiredOrder(request.url.text.starts_with("https://one") ? 1 : 2);
        return request.method == "GET" ? Answer::json(200, dataText(platform::List{order}))
                                       : Answer::json(200, dataText(order));
      });
  Library library{[this]() -> const platform::Services& { return services; }};
  std::unique_ptr<platform::NotificationObserver> observer;
  int updates = 0;
};

TEST_F(LibraryTest, TwoTakeOrdersInOneProcess) {
  Store one(services, "one"), two(services, "two");
  for (Store* const store : {&one, &two}) {
    store->library.context()->appToken.set(store->library.customer().current()->token);
    store->library.orders().create({.siteID = 42, .partnerIdentifier = "P"}, tell());
    store->library.orders().fetch();
  }
  while (queues->runAll() + one.http->deliverAll() + two.http->deliverAll() > 0) {
  }
  EXPECT_THAT(happened({Step::told}), are(told(theOrder(1)), told(theOrder(2))));
  EXPECT_EQ(itemOf(one.library.orders().all()), theOrders({1}));
  EXPECT_EQ(itemOf(two.library.orders().open()), theOrders({2}));
  EXPECT_EQ(std::pair(one.updates, two.updates), std::pair(1, 1));
  for (const auto& request : two.http->requests()) {
    EXPECT_THAT(request.headers, testing::Contains(platform::HeaderField{"App-Token", "two"}));
  }
  EXPECT_EQ(Ovinta::orders().all(), std::nullopt) << "the process's own is another";
}

TEST_F(LibraryTest, ManagersMayGoBeforeTheirRequests) {
  signIn();
  answer("GET", "m/v1/orders", ordersAnswer({requiredOrder(1)}));
  answer("GET", "m/v1/customer", dataAnswer(customerRecord()));
  answer("GET", "m/v1/app", dataAnswer(platform::Dictionary{{"a", 1}}));
  answerAll(Answer::json(200, sitesText({}, 1, 1)));
  const platform::CircularRegion region{.center = {}, .radius = 1, .identifier = ""};
  location->setAuthorizationStatus(3);
  OrdersManager().fetch(tell());
  CustomerManager().loginWithToken("t", tell());
  ConfigurationManager().fetch(tell());
  SitesManager().fetchAll("x", tell());
  NotifyManager().createForSitesInRegion(region, {}, tell());
  EXPECT_THAT(outcome({Step::told}), testing::SizeIs(5));
}

TEST_F(LibraryTest, AnOrderThatIsGoneIsSoForTheOrdersThatAreFollowed) {
  signIn();
  fetchOrders({requiredOrder(7)});
  answer("POST", "m/v1/events", Answer::json(410, "{}"));
  OrdersManager own;
  own.setAll(OrderList{decodeOrder(requiredOrder(7))});
  own.event(7, CustomerState::enRoute);
  drain();
  EXPECT_EQ(Ovinta::orders().all()->front()->state(), OrderState::gone);
  EXPECT_NE(own.all()->front()->state(), OrderState::gone);
}

}  // namespace
}  // namespace ovinta::test
