// Every operation of the twin, called against the sandbox: when it serves, and when it cannot be
// reached and the device forbids.

#include <vector>

#import "tests/bindings/objc/TwinFixture.h"

namespace objctest {
namespace {

NSString* const kAddress = @"ann@example.com";
NSString* const kPassword = @"secret sauce";

/// An operation, and the class of what it reports; none where it reports an error or nothing.
struct Call {
  const char* name;
  Class result;
  std::function<void(Report)> start;
  bool cannotFail = false;
};

class CallTest : public TwinTest {
 protected:
  std::vector<Call> customerCalls();
  std::vector<Call> orderCalls(Order* order);
  std::vector<Call> siteCalls();
  void expectAll(const std::vector<Call>& calls, bool succeed);

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
      {"create with consent", customer,
       [this](Report r) { [Ovinta.customer create:info() customerConsent:consent callback:r]; }},
      {"create with flags", customer,
       [](Report r) {
         [Ovinta.customer create:info() termsOfService:YES ageVerification:YES callback:r];
       }},
      {"update", customer, [](Report r) { [Ovinta.customer update:info() callback:r]; }},
      {"sign up", customer,
       [](Report r) {
         [Ovinta.customer signUpWithEmailAddress:kAddress password:kPassword callback:r];
       }},
      {"login", customer,
       [](Report r) {
         [Ovinta.customer loginWithEmailAddress:kAddress password:kPassword callback:r];
       }},
      {"login with token", customer,
       [](Report r) {
         [Ovinta.customer loginWithTokenWithToken:Ovinta.customer.current.token callback:r];
       }},
      {"request new password", nil,
       [](Report r) {
         [Ovinta.customer requestNewPasswordWithEmailAddress:kAddress
                                                    callback:^(OvintaError* error) {
                                                      r(nil, error);
                                                    }];
       }},
      {"set new password", customer,
       [this](Report r) {
         NSString* const token = @(world.resetToken([kAddress UTF8String]).c_str());
         [Ovinta.customer setNewPasswordWithResetPasswordToken:token
                                                      password:@"another one"
                                                  confrimation:@"another one"
                                                      callback:r];
       }},
      {"configuration", [NSDictionary class],
       [](Report r) { [Ovinta.config fetchWithCallback:r]; }},
  };
}

std::vector<Call> CallTest::orderCalls(Order* order) {
  Class const kind = [Order class];
  NSString* const code = order.redemptionCode;
  const int64_t orderID = order.id;
  return {
      {"fetch", [NSArray class], [](Report r) { [Ovinta.orders fetchWithCallback:r]; }},
      {"create", kind,
       [](Report r) {
         CreateOrderInfo* const order = [[[CreateOrderInfo alloc] initWithSiteID:42
                                                               partnerIdentifier:@"A-2"
                                                                    customerInfo:info()
                                                                       pushToken:nil
                                                                    pickupWindow:nil] autorelease];
         [Ovinta.orders createWithInfo:order callback:r];
       }},
      {"create with state", kind,
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
      {"create without state", kind,
       [](Report r) {
         [Ovinta.orders createWithSiteID:42
                       partnerIdentifier:@"A-4"
                            customerInfo:info()
                            pickupWindow:nil
                                callback:r];
       }},
      {"fetch with code", kind,
       [code](Report r) { [Ovinta.orders fetchWithRedemptionCode:code callback:r]; }},
      {"claim with pickup type", kind,
       [this](Report r) {
         [Ovinta.orders claimWithRedemptionCode:@(world.offerOrder().c_str())
                                   customerInfo:info()
                                     pickupType:@"curbside"
                                       callback:r];
       }},
      {"claim", kind,
       [this](Report r) {
         [Ovinta.orders claimWithRedemptionCode:@(world.offerOrder().c_str())
                                   customerInfo:info()
                                       callback:r];
       }},
      {"claim with claim info", kind,
       [this](Report r) {
         ClaimOrderInfo* const claim =
             [[[ClaimOrderInfo alloc] initWithCustomerInfo:info() pushToken:@"00ff"
                                                pickupType:nil] autorelease];
         [Ovinta.orders claimWithRedemptionCode:@(world.offerOrder().c_str())
                                 claimOrderInfo:claim
                                customerConsent:consent
                                       callback:r];
       }},
      {"event with order", kind,
       [order](Report r) {
         [Ovinta.orders eventWithOrder:order customerState:CustomerStateEnRoute callback:r];
       }},
      {"event with customer state", kind,
       [orderID](Report r) {
         [Ovinta.orders eventWithOrderID:orderID customerState:CustomerStateArrived callback:r];
       }},
      {"rating", kind,
       [orderID](Report r) {
         [Ovinta.orders rateOrderWithOrderID:orderID rating:5 comments:@"good" callback:r];
       }},
      {"event with state", kind,
       [orderID](Report r) {
         [Ovinta.orders eventWithOrderID:orderID state:OrderStateCompleted callback:r];
       }},
  };
}

std::vector<Call> CallTest::siteCalls() {
  Class const list = [NSArray class];
  return {
      {"sites of a query", list,
       [](Report r) {
         [Ovinta.sites
             fetchWithQuery:nil
                       page:1
                   callback:^(NSArray* sites, Pagination* pagination, OvintaError* error) {
                     r(pagination.currentPage == 1 ? sites : nil, error);
                   }];
       }},
      {"all sites", list, [](Report r) { [Ovinta.sites fetchAllWithQuery:@"new" callback:r]; }},
      {"sites of a region", list,
       [this](Report r) { [Ovinta.sites fetchWithRegion:region page:1 callback:r]; }},
      {"sites of a region, page by page", list,
       [this](Report r) { [Ovinta.sites fetchWithRegion:region page:1 per:1 callback:r]; }},
      {"notifications for sites", nil,
       [this](Report r) {
         [Ovinta.notify createForSites:Ovinta.sites.all
                          notification:notification
                              callback:^(OvintaError* error) {
                                r(nil, error);
                              }];
       }},
      {"notifications in a region", list,
       [this](Report r) {
         [Ovinta.notify createForSitesInRegion:region notification:notification callback:r];
       }},
      {"no notifications", nil,
       [](Report r) {
         [Ovinta.notify clearWithCallback:^(OvintaError* error) {
           r(nil, error);
         }];
       },
       true},
  };
}

void CallTest::expectAll(const std::vector<Call>& calls, bool succeed) {
  for (const Call& call : calls) {
    const Outcome outcome = await(call.start);
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

  [UserDefaultsKey.apiBase setWithValue:@"http://127.0.0.1:1"];
  world.device().location().setLocationServicesEnabled(false);
  expectAll(customers, false);
  expectAll(orders, false);
  expectAll(sites, false);
  world.device().location().setLocationServicesEnabled(true);
}

TEST_F(CallTest, TakeNilBlocks) {
  becomeCustomer();
  const int64_t orderID = placeOrder().id;
  [Ovinta.config fetchWithCallback:nil];
  [Ovinta.customer update:info() callback:nil];
  [Ovinta.customer requestNewPasswordWithEmailAddress:@"nobody@example.com" callback:nil];
  [Ovinta.orders fetchWithCallback:nil];
  [Ovinta.sites fetchAllWithQuery:nil callback:nil];
  [Ovinta.sites fetchWithQuery:nil page:1 callback:nil];
  [Ovinta.notify createForSites:[NSArray array] notification:notification callback:nil];
  [Ovinta.notify clearWithCallback:nil];
  [Ovinta.orders eventWithOrderID:orderID customerState:CustomerStateArrived callback:nil];
  EXPECT_TRUE(world.waitUntil([orderID] {
    NSAutoreleasePool* const pool = [[NSAutoreleasePool alloc] init];
    const bool arrived = [[Ovinta.orders.all lastObject] id] == orderID &&
                         [[Ovinta.orders.all lastObject] customerState] == CustomerStateArrived;
    [pool drain];
    return arrived;
  }));
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
