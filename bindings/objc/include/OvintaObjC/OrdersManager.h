#import <OvintaObjC/ClaimOrderInfo.h>
#import <OvintaObjC/CreateOrderInfo.h>
#import <OvintaObjC/CustomerConsent.h>
#import <OvintaObjC/Order.h>
#import <OvintaObjC/OrdersManagerError.h>

NS_ASSUME_NONNULL_BEGIN

/// Receives the order, or nil and the error. After an event both may be nil, or neither; see there.
typedef void (^OrderCallback)(Order* _Nullable order, OvintaError* _Nullable error);

/// Receives the orders or the error.
typedef void (^OrdersCallback)(NSArray<Order*>* _Nullable orders, OvintaError* _Nullable error);

/// Holds the customer's orders; reached as `Ovinta.orders`, for which every instance stands. All
/// methods may be called from any thread and return at once. A callback, which may be nil, is
/// called at most once, with no lock held: on the callback thread of the URL session when the
/// service was asked, on a thread of the API queue when the stored base URL is no URL, inside the
/// call when the request was refused before. Where a URL session of the application's own,
/// installed in C++, completes a success without data, it is left out, and a fetch stays under way.
/// "The service's errors" are those of a request (see `OvintaError`). Each property is safe by
/// itself; nothing is promised across properties: while a fetch completes, `all` may be new and
/// `open` still the old list.
@interface OrdersManager : NSObject
/// Every order of the last successful fetch, in the service's order; nil before it, also after a
/// restart. A list that is set is also written to the order store, in the background; `open` and
/// `closed` stay as they are.
@property(nonatomic, copy, nullable) NSArray<Order*>* all;
/// The orders of `all` that are open (`isOpen`), in its order; nil before the first fetch. Up to
/// date after each fetch, event and push.
@property(nonatomic, copy, nullable) NSArray<Order*>* open;
/// The orders of `all` that were not open at the last fetch, most recently updated first, those
/// without `updatedAt` last; nil before it.
@property(nonatomic, copy, nullable) NSArray<Order*>* closed;

/// Refreshes the orders, splits them and has them written to the order store. Posts
/// `Ovinta.ordersUpdated` after the callback of a success, `Ovinta.ordersError` after that of a
/// failure; open orders without a push token then get the device's. Errors: `OrdersManagerError` of
/// type `LoadingCustomer`, `LoadingApiUrl` or, with no notification, `AlreadyFetching`; the
/// service's. On failure the lists stay as they are. The fetch lasts until the last callback and
/// observer has returned: one that is started from there is refused.
- (void)fetchWithCallback:(nullable OrdersCallback)callback;

/// Creates an order for the current customer; with none, first creates the customer from the
/// order's customer fields, which counts as consent to both terms and age verification. Reports the
/// location permission for the new order. The lists change with the next fetch. Errors:
/// `OrdersManagerError` of type `LoadingApiUrl` or `LoadingCustomer` (no customer and no name, or
/// the customer could not be created); the service's.
- (void)createWithInfo:(CreateOrderInfo*)info callback:(nullable OrderCallback)callback;
/// The same, from its parts and the device's push token; without a state the service chooses.
- (void)createWithSiteID:(int64_t)siteID
       partnerIdentifier:(NSString*)partnerIdentifier
            customerInfo:(CustomerInfo*)customerInfo
            pickupWindow:(nullable PickupWindow*)pickupWindow
                   state:(OrderState)state
                callback:(nullable OrderCallback)callback;
- (void)createWithSiteID:(int64_t)siteID
       partnerIdentifier:(NSString*)partnerIdentifier
            customerInfo:(CustomerInfo*)customerInfo
            pickupWindow:(nullable PickupWindow*)pickupWindow
                callback:(nullable OrderCallback)callback;

/// Looks an order up by its redemption code, for which no customer is needed. The lists stay as
/// they are. Errors: `OrdersManagerError` of type `LoadingApiUrl`, also posted as
/// `Ovinta.ordersError`; the service's.
- (void)fetchWithRedemptionCode:(NSString*)redemptionCode callback:(nullable OrderCallback)callback;

/// Claims the order of a redemption code for the current customer, with the device's push token.
/// Reports the location permission for it. The lists change with the next fetch. Errors:
/// `OrdersManagerError` of type `LoadingApiUrl` or `LoadingCustomer`; the service's.
- (void)claimWithRedemptionCode:(NSString*)redemptionCode
                   customerInfo:(CustomerInfo*)customerInfo
                     pickupType:(nullable NSString*)pickupType
                       callback:(nullable OrderCallback)callback;
- (void)claimWithRedemptionCode:(NSString*)redemptionCode
                   customerInfo:(CustomerInfo*)customerInfo
                       callback:(nullable OrderCallback)callback;
/// The same; with no current customer, first creates one from the claim's customer fields and the
/// consent. Further errors: `LoadingCustomer` also when there is no name or the customer could not
/// be created; `CustomerManagerError` of type `MissingCustomerConsent`.
- (void)claimWithRedemptionCode:(NSString*)redemptionCode
                 claimOrderInfo:(ClaimOrderInfo*)claimOrderInfo
                customerConsent:(nullable CustomerConsent*)customerConsent
                       callback:(nullable OrderCallback)callback;

/// Gives the open orders that have a redemption code and another push token this one, here and at
/// the service. It does not become the device's. How the requests end is not reported; without a
/// customer or a base URL nothing happens.
- (void)updatePushTokensWithNewPushToken:(NSString*)pushToken;
/// Gives the open orders that have a redemption code and no push token the device's, likewise.
- (void)updateOrdersWithNoPushToken;

/// Reports a step of the customer's journey. When the service accepts it, the order in `all`
/// changes and, if that made a difference, `Ovinta.orderUpdated` is posted; when it fails,
/// `Ovinta.orderEventError`. The callback receives the order found in `all`, or nil, and the error,
/// one of the service's, or nil. Without a customer or base URL nothing is sent, and for an order
/// that the service says is gone, which then becomes `OrderStateGone`, the event has done its work:
/// in neither case is the callback called. `closed` changes with the next fetch.
- (void)eventWithOrder:(Order*)order
         customerState:(CustomerState)customerState
              callback:(nullable OrderCallback)callback;
- (void)eventWithOrderID:(int64_t)orderID
           customerState:(CustomerState)customerState
                callback:(nullable OrderCallback)callback;
/// Reports a step of the order; otherwise the same.
- (void)eventWithOrderID:(int64_t)orderID
                   state:(OrderState)state
                callback:(nullable OrderCallback)callback;
/// Rates the order, on the service's scale; otherwise the same.
- (void)rateOrderWithOrderID:(int64_t)orderID
                      rating:(int64_t)rating
                    comments:(nullable NSString*)comments
                    callback:(nullable OrderCallback)callback;

/// Applies the payload of a push: "order_id" (a decimal text), and any of "order_state",
/// "customer_state" (wire strings) and "eta_at" (e.g. "2021-03-04T15:30:00.000-0500"). Posts
/// `Ovinta.orderUpdated` inside the call. Unknown values are ignored; without an identifier, or for
/// an order that is not in `all`, all orders are fetched instead.
- (void)updateOrderFromNotification:(NSDictionary*)userInfo;
@end

NS_ASSUME_NONNULL_END
