// Every operation of the twin, called against the sandbox: when it serves, and when it cannot be
// reached and the device forbids.

#include <set>
#include <vector>

#import "bindings/objc/src/TwinClasses.h"
#import "tests/bindings/objc/TwinFixture.h"
#include "tests/bindings/objc/TwinTable.h"

namespace objctest {
namespace {

NSString* const kAddress = @"ann@example.com";
NSString* const kPassword = @"secret sauce";

/// An operation, and the class of what it reports; none where it reports an error or nothing.
struct Call {
  /// Its class and selector.
  std::string name;
  Class result;
  std::function<void(Report)> start;
  bool cannotFail = false;
};

/// Starts an operation that reports nothing but errors.
void reportErrors(Report report, const std::function<void(ErrorCallback)>& start) {
  if (!report) return start(nil);
  start(^(OvintaError* error) {
    report(nil, error);
  });
}

class CallTest : public TwinTest {
 protected:
  std::vector<Call> customerCalls();
  std::vector<Call> orderCalls(Order* order);
  std::vector<Call> siteCalls();
  void expectAll(const std::vector<Call>& calls, bool succeed);

  /// What was called, by class and selector.
  std::set<std::string> called;
  CustomerConsent* consent = [[[CustomerConsent alloc] initWithTermsOfService:YES
                                                              ageVerification:YES] autorelease];
  OvintaCircularRegion* region =
      [[[OvintaCircularRegion alloc] initWithLatitude:40.74
                                            longitude:-73.99
                                               radius:5000
                                           identifier:@"here"] autorelease];
  NotificationInfo* notification = [[[NotificationInfo alloc] initWithTitle:@"Near"
                                                                    content:@"Come in"
                                                                       data:nil] autorelease];
};

std::vector<Call> CallTest::customerCalls() {
  Class const customer = [Customer class];
  return {
      {"CustomerManager create:customerConsent:callback:", customer,
       [this](Report r) { [Ovinta.customer create:info() customerConsent:consent callback:r]; }},
      {"CustomerManager create:termsOfService:ageVerification:callback:", customer,
       [](Report r) {
         [Ovinta.customer create:info() termsOfService:YES ageVerification:YES callback:r];
       }},
      {"CustomerManager update:callback:", customer,
       [](Report r) { [Ovinta.customer update:info() callback:r]; }},
      {"CustomerManager signUpWithEmailAddress:password:callback:", customer,
       [](Report r) {
         [Ovinta.customer signUpWithEmailAddress:kAddress password:kPassword callback:r];
       }},
      {"CustomerManager loginWithEmailAddress:password:callback:", customer,
       [](Report r) {
         [Ovinta.customer loginWithEmailAddress:kAddress password:kPassword callback:r];
       }},
      {"CustomerManager loginWithTokenWithToken:callback:", customer,
       [](Report r) {
         Customer* const current = Ovinta.customer.current;
         [Ovinta.customer loginWithTokenWithToken:current ? current.token : @"none" callback:r];
       }},
      {"CustomerManager requestNewPasswordWithEmailAddress:callback:", nil,
       [](Report r) {
         reportErrors(r, [](ErrorCallback e) {
           [Ovinta.customer requestNewPasswordWithEmailAddress:kAddress callback:e];
         });
       }},
      {"CustomerManager setNewPasswordWithResetPasswordToken:password:confrimation:callback:",
       customer,
       [this](Report r) {
         NSString* const token = @(world.resetToken([kAddress UTF8String]).c_str());
         [Ovinta.customer setNewPasswordWithResetPasswordToken:token
                                                      password:@"another one"
                                                  confrimation:@"another one"
                                                      callback:r];
       }},
      {"ConfigurationManager fetchWithCallback:", [NSDictionary class],
       [](Report r) { [Ovinta.config fetchWithCallback:r]; }},
  };
}

std::vector<Call> CallTest::orderCalls(Order* order) {
  Class const kind = [Order class];
  NSString* const code = order.redemptionCode;
  const int64_t orderID = order.id;
  return {
      {"OrdersManager fetchWithCallback:", [NSArray class],
       [](Report r) { [Ovinta.orders fetchWithCallback:r]; }},
      {"OrdersManager createWithInfo:callback:", kind,
       [](Report r) {
         CreateOrderInfo* const order = [[[CreateOrderInfo alloc] initWithSiteID:42
                                                               partnerIdentifier:@"A-2"
                                                                    customerInfo:info()
                                                                       pushToken:nil
                                                                    pickupWindow:nil] autorelease];
         [Ovinta.orders createWithInfo:order callback:r];
       }},
      {"OrdersManager createWithSiteID:partnerIdentifier:customerInfo:pickupWindow:state:callback:",
       kind,
       [](Report r) {
         PickupWindow* const window =
             [[[PickupWindow alloc] init:[NSDate dateWithTimeIntervalSince1970:1e9]] autorelease];
         [Ovinta.orders createWithSiteID:42
                       partnerIdentifier:@"A-3"
                            customerInfo:info()
                            pickupWindow:window
                                   state:OrderStateReady
                                callback:r];
       }},
      {"OrdersManager createWithSiteID:partnerIdentifier:customerInfo:pickupWindow:callback:", kind,
       [](Report r) {
         [Ovinta.orders createWithSiteID:42
                       partnerIdentifier:@"A-4"
                            customerInfo:info()
                            pickupWindow:nil
                                callback:r];
       }},
      {"OrdersManager fetchWithRedemptionCode:callback:", kind,
       [code](Report r) { [Ovinta.orders fetchWithRedemptionCode:code callback:r]; }},
      {"OrdersManager claimWithRedemptionCode:customerInfo:pickupType:callback:", kind,
       [this](Report r) {
         [Ovinta.orders claimWithRedemptionCode:@(world.offerOrder().c_str())
                                   customerInfo:info()
                                     pickupType:@"curbside"
                                       callback:r];
       }},
      {"OrdersManager claimWithRedemptionCode:customerInfo:callback:", kind,
       [this](Report r) {
         [Ovinta.orders claimWithRedemptionCode:@(world.offerOrder().c_str())
                                   customerInfo:info()
                                       callback:r];
       }},
      {"OrdersManager claimWithRedemptionCode:claimOrderInfo:customerConsent:callback:", kind,
       [this](Report r) {
         ClaimOrderInfo* const claim =
             [[[ClaimOrderInfo alloc] initWithCustomerInfo:info() pushToken:@"00ff"
                                                pickupType:nil] autorelease];
         [Ovinta.orders claimWithRedemptionCode:@(world.offerOrder().c_str())
                                 claimOrderInfo:claim
                                customerConsent:consent
                                       callback:r];
       }},
      {"OrdersManager eventWithOrder:customerState:callback:", kind,
       [order](Report r) {
         [Ovinta.orders eventWithOrder:order customerState:CustomerStateEnRoute callback:r];
       }},
      {"OrdersManager eventWithOrderID:customerState:callback:", kind,
       [orderID](Report r) {
         [Ovinta.orders eventWithOrderID:orderID customerState:CustomerStateArrived callback:r];
       }},
      {"OrdersManager rateOrderWithOrderID:rating:comments:callback:", kind,
       [orderID](Report r) {
         [Ovinta.orders rateOrderWithOrderID:orderID rating:5 comments:@"good" callback:r];
       }},
      {"OrdersManager eventWithOrderID:state:callback:", kind,
       [orderID](Report r) {
         [Ovinta.orders eventWithOrderID:orderID state:OrderStateCompleted callback:r];
       }},
  };
}

std::vector<Call> CallTest::siteCalls() {
  Class const list = [NSArray class];
  return {
      {"SitesManager fetchWithQuery:page:callback:", list,
       [](Report r) {
         [Ovinta.sites
             fetchWithQuery:nil
                       page:1
                   callback:r ? ^(NSArray<Site*>* sites, Pagination* pagination, OvintaError* error) { r(pagination.currentPage == 1 ? sites : nil, error); } : (SitesPageCallback)nil];
       }},
      {"SitesManager fetchAllWithQuery:callback:", list,
       [](Report r) { [Ovinta.sites fetchAllWithQuery:@"new" callback:r]; }},
      {"SitesManager fetchWithRegion:page:callback:", list,
       [this](Report r) { [Ovinta.sites fetchWithRegion:region page:1 callback:r]; }},
      {"SitesManager fetchWithRegion:page:per:callback:", list,
       [this](Report r) { [Ovinta.sites fetchWithRegion:region page:1 per:1 callback:r]; }},
      {"NotifyManager createForSites:notification:callback:", nil,
       [this](Report r) {
         reportErrors(r, [this](ErrorCallback e) {
           [Ovinta.notify createForSites:Ovinta.sites.all notification:notification callback:e];
         });
       }},
      {"NotifyManager createForSitesInRegion:notification:callback:", list,
       [this](Report r) {
         [Ovinta.notify createForSitesInRegion:region notification:notification callback:r];
       }},
      {"NotifyManager clearWithCallback:", nil,
       [](Report r) {
         reportErrors(r, [](ErrorCallback e) { [Ovinta.notify clearWithCallback:e]; });
       },
       true},
  };
}

void CallTest::expectAll(const std::vector<Call>& calls, bool succeed) {
  for (const Call& call : calls) {
    const Outcome outcome = await(call.start);
    called.insert(call.name);
    if (succeed || call.cannotFail) {
      EXPECT_EQ(outcome.error, nil) << call.name << ": " << text([outcome.error description]);
      EXPECT_TRUE(call.result ? [outcome.result isKindOfClass:call.result] : !outcome.result)
          << call.name;
    } else {
      EXPECT_TRUE([outcome.error isKindOfClass:[OvintaError class]]) << call.name;
    }
  }
}

TEST_F(CallTest, SucceedAndFail) {
  const std::vector<Call> customers = customerCalls();
  expectAll(customers, true);
  const std::vector<Call> orders = orderCalls(placeOrder());
  expectAll(orders, true);
  const std::vector<Call> sites = siteCalls();
  expectAll(sites, true);
  EXPECT_GT([Ovinta.sites.all count], 1u);

  std::vector<Call> all = customers;
  all.insert(all.end(), orders.begin(), orders.end());
  all.insert(all.end(), sites.begin(), sites.end());
  Ovinta.sites.all = [NSArray array];
  for (const Call& call : all) call.start(nil);
  EXPECT_TRUE(world.waitUntil([] { return !ovinta::Ovinta::sites().all()->empty(); }));
  await([](Report report) { [Ovinta.config fetchWithCallback:report]; });

  [UserDefaultsKey.apiBase setWithValue:@"http://127.0.0.1:1"];
  world.device().location().setLocationServicesEnabled(false);
  expectAll(all, false);
  for (const Call& call : all) call.start(nil);
  world.device().location().setLocationServicesEnabled(true);

  for (const auto& [className, selectors] : ovinta::test::twinTable()) {
    for (const std::string& selector : selectors) {
      if (!selector.ends_with("allback:")) continue;
      EXPECT_TRUE(called.contains(className + " " + selector)) << className << " " << selector;
    }
  }
}

TEST_F(CallTest, WithoutCallbacksDoWhatTheySay) {
  becomeCustomer();
  placeOrder();
  Order* const order = [Ovinta.orders.open lastObject];

  Ovinta.pushToken = @"first";
  [Ovinta.orders updateOrdersWithNoPushToken];
  EXPECT_EQ(text(order.pushToken), "first");
  [Ovinta.orders updatePushTokensWithNewPushToken:@"second"];
  EXPECT_EQ(text(order.pushToken), "second");
  [Ovinta updatePushToken:@"third"];
  EXPECT_EQ(text(Ovinta.pushToken), "third");
  const uint8_t bytes[] = {0x00, 0x0a, 0xff};
  [Ovinta updateAPNPushToken:[NSData dataWithBytes:bytes length:sizeof bytes]];
  EXPECT_EQ(text(Ovinta.pushToken), "000aff");

  NSString* const orderID = [NSString stringWithFormat:@"%lld", (long long)order.id];
  [Ovinta handleRemoteNotification:@{@"order_id" : orderID, @"order_state" : @"ready", @1 : @2}];
  EXPECT_EQ(order.state, OrderStateReady);
  [Ovinta.orders
      updateOrderFromNotification:@{@"order_id" : orderID, @"customer_state" : @"waiting"}];
  EXPECT_EQ(order.customerState, CustomerStateWaiting);

  Ovinta.orders.closed = @[ order ];
  Ovinta.orders.open = [NSArray array];
  Ovinta.orders.all = nil;
  Ovinta.sites.all = nil;
  EXPECT_EQ([Ovinta.orders.closed lastObject], order);
  EXPECT_EQ([Ovinta.orders.open count], 0u);
  EXPECT_EQ(Ovinta.orders.all, nil);
  EXPECT_EQ(Ovinta.sites.all, nil);

  Customer* const customer = Ovinta.customer.current;
  [Ovinta.customer signOut];
  EXPECT_EQ(Ovinta.customer.current, nil);
  Ovinta.customer.current = customer;
  EXPECT_EQ(Ovinta.customer.current, customer);
  EXPECT_TRUE([Ovinta.notify
      isOvintaNotifyUserInfo:@{NotifyManager.kSourceName : NotifyManager.kOvintaNotify}]);
  EXPECT_GT([Ovinta.sdkVersion length], 0u);
  [Ovinta stopLocationUpdates];
}

}  // namespace
}  // namespace objctest
