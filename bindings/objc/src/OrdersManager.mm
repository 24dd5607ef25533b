#import "bindings/objc/src/Blocks.h"

using twins::callLibrary;
using twins::object;
using twins::optionalText;
using twins::text;

static ovinta::OrdersManager& manager() { return ovinta::Ovinta::orders(); }

/// The block, as the library calls it.
static ovinta::OrderCallback reporting(OrderCallback block) {
  return twins::callback<ovinta::OrderCallback>(block);
}

@implementation OrdersManager

/// A list of orders that can be read and replaced.
#define OVINTA_ORDER_LIST(getter, setter)                                               \
  -(NSArray*)getter {                                                                   \
    return callLibrary([] { return twins::toObjC(manager().getter()); });               \
  }                                                                                     \
  -(void)setter : (NSArray*)orders {                                                    \
    callLibrary([&] { manager().setter(twins::optionalList<ovinta::Order>(orders)); }); \
  }

OVINTA_ORDER_LIST(all, setAll)
OVINTA_ORDER_LIST(open, setOpen)
OVINTA_ORDER_LIST(closed, setClosed)

- (void)fetchWithCallback:(OrdersCallback)block {
  callLibrary([&] { manager().fetch(twins::callback<ovinta::OrdersCallback>(block)); });
}

- (void)createWithInfo:(CreateOrderInfo*)info callback:(OrderCallback)block {
  callLibrary([&] { manager().create(object<ovinta::CreateOrderInfo>(info), reporting(block)); });
}

- (void)createWithSiteID:(int64_t)siteID
       partnerIdentifier:(NSString*)partnerIdentifier
            customerInfo:(CustomerInfo*)customerInfo
            pickupWindow:(PickupWindow*)pickupWindow
                   state:(OrderState)state
                callback:(OrderCallback)block {
  callLibrary([&] {
    manager().create(siteID, text(partnerIdentifier), object<ovinta::CustomerInfo>(customerInfo),
                     twins::optionalObject<ovinta::PickupWindow>(pickupWindow),
                     twins::state<ovinta::OrderState>(state), reporting(block));
  });
}

- (void)createWithSiteID:(int64_t)siteID
       partnerIdentifier:(NSString*)partnerIdentifier
            customerInfo:(CustomerInfo*)customerInfo
            pickupWindow:(PickupWindow*)pickupWindow
                callback:(OrderCallback)block {
  callLibrary([&] {
    manager().create(siteID, text(partnerIdentifier), object<ovinta::CustomerInfo>(customerInfo),
                     twins::optionalObject<ovinta::PickupWindow>(pickupWindow), reporting(block));
  });
}

- (void)fetchWithRedemptionCode:(NSString*)redemptionCode callback:(OrderCallback)block {
  callLibrary([&] { manager().fetchWithRedemptionCode(text(redemptionCode), reporting(block)); });
}

- (void)claimWithRedemptionCode:(NSString*)redemptionCode
                   customerInfo:(CustomerInfo*)customerInfo
                     pickupType:(NSString*)pickupType
                       callback:(OrderCallback)block {
  callLibrary([&] {
    manager().claimWithRedemptionCode(text(redemptionCode),
                                      object<ovinta::CustomerInfo>(customerInfo),
                                      optionalText(pickupType), reporting(block));
  });
}

- (void)claimWithRedemptionCode:(NSString*)redemptionCode
                   customerInfo:(CustomerInfo*)customerInfo
                       callback:(OrderCallback)block {
  callLibrary([&] {
    manager().claimWithRedemptionCode(text(redemptionCode),
                                      object<ovinta::CustomerInfo>(customerInfo), reporting(block));
  });
}

- (void)claimWithRedemptionCode:(NSString*)redemptionCode
                 claimOrderInfo:(ClaimOrderInfo*)claimOrderInfo
                customerConsent:(CustomerConsent*)customerConsent
                       callback:(OrderCallback)block {
  callLibrary([&] {
    manager().claimWithRedemptionCode(
        text(redemptionCode), object<ovinta::ClaimOrderInfo>(claimOrderInfo),
        twins::optionalObject<ovinta::CustomerConsent>(customerConsent), reporting(block));
  });
}

- (void)updatePushTokensWithNewPushToken:(NSString*)pushToken {
  callLibrary([&] { manager().updatePushTokensWithNewPushToken(text(pushToken)); });
}

- (void)updateOrdersWithNoPushToken {
  callLibrary([] { manager().updateOrdersWithNoPushToken(); });
}

- (void)eventWithOrder:(Order*)order
         customerState:(CustomerState)customerState
              callback:(OrderCallback)block {
  callLibrary([&] {
    manager().event(object<ovinta::Order>(order),
                    twins::state<ovinta::CustomerState>(customerState), reporting(block));
  });
}

- (void)eventWithOrderID:(int64_t)orderID
           customerState:(CustomerState)customerState
                callback:(OrderCallback)block {
  callLibrary([&] {
    manager().event(orderID, twins::state<ovinta::CustomerState>(customerState), reporting(block));
  });
}

- (void)eventWithOrderID:(int64_t)orderID state:(OrderState)state callback:(OrderCallback)block {
  callLibrary(
      [&] { manager().event(orderID, twins::state<ovinta::OrderState>(state), reporting(block)); });
}

- (void)rateOrderWithOrderID:(int64_t)orderID
                      rating:(int64_t)rating
                    comments:(NSString*)comments
                    callback:(OrderCallback)block {
  callLibrary(
      [&] { manager().rateOrder(orderID, rating, optionalText(comments), reporting(block)); });
}

- (void)updateOrderFromNotification:(NSDictionary*)userInfo {
  callLibrary([&] { manager().updateOrderFromNotification(twins::dictionary(userInfo)); });
}

@end
