#import <OvintaObjC/Beacon.h>
#import <OvintaObjC/CustomerState.h>
#import <OvintaObjC/LocationAuthStatus.h>
#import <OvintaObjC/OrderState.h>

NS_ASSUME_NONNULL_BEGIN

/// The kinds of order events, as the service names them: a position, a step of the customer or of
/// the order, a change of the location permission, a rating. May be used from any thread.
@interface OrderEventType : NSObject
/// Each is the `eventType` of its kind.
@property(class, nonatomic, readonly, copy) NSString* locationUpdate;
@property(class, nonatomic, readonly, copy) NSString* stateChange;
@property(class, nonatomic, readonly, copy) NSString* permissionUpdate;
@property(class, nonatomic, readonly, copy) NSString* customerRating;
@end

/// One report from the customer's device to the service about an order. Absent fields are not sent.
/// To send one, call `OrdersManager`, which makes its own.
@interface OrderEvent : OvintaRecord
/// A step of the customer's journey. An estimate is cut to whole seconds; one that no 64-bit
/// integer can hold counts as absent.
- (instancetype)initWithOrderID:(int64_t)orderID
                  customerState:(CustomerState)customerState
                     etaSeconds:(nullable NSNumber*)etaSeconds;
/// A step of the order.
- (instancetype)initWithOrderID:(int64_t)orderID state:(OrderState)state;
/// A change of the location permission.
- (instancetype)initWithOrderID:(int64_t)orderID
             locationAuthStatus:(LocationAuthStatus)locationAuthStatus;
/// The customer's rating of the order; an absent comment is not sent.
- (instancetype)initWithOrderID:(int64_t)orderID
                 customerRating:(int64_t)customerRating
               customerComments:(nullable NSString*)customerComments;
/// The order that it is about, and what is reported, an `OrderEventType`.
@property(nonatomic, readonly) int64_t orderID;
@property(nonatomic, readonly, copy) NSString* eventType;
/// Degrees; present in a position, as accuracy and speed.
@property(nonatomic, readonly, copy, nullable) NSNumber* longitude;
@property(nonatomic, readonly, copy, nullable) NSNumber* latitude;
/// Metres; negative when the position is not valid.
@property(nonatomic, readonly, copy, nullable) NSNumber* accuracy;
/// Metres per second; negative when unknown.
@property(nonatomic, readonly, copy, nullable) NSNumber* speed;
/// The beacons heard of late, possibly none; present in a position.
@property(nonatomic, readonly, copy, nullable) NSArray<Beacon*>* beacons;
/// Seconds until the customer arrives.
@property(nonatomic, readonly, copy, nullable) NSNumber* etaSeconds;
/// A `CustomerState`: the new one, in a step of the customer.
@property(nonatomic, readonly, copy, nullable) NSNumber* customerState;
/// An `OrderState`: the new one, in a step of the order.
@property(nonatomic, readonly, copy, nullable) NSNumber* state;
/// A `LocationAuthStatus`: the new permission.
@property(nonatomic, readonly, copy, nullable) NSNumber* locationAuthStatus;
/// The rating, whose scale the service knows, and what the customer says to it.
@property(nonatomic, readonly, copy, nullable) NSNumber* customerRating;
@property(nonatomic, readonly, copy, nullable) NSString* customerComments;
@end

NS_ASSUME_NONNULL_END
