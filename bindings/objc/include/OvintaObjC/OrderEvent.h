#import <OvintaObjC/Beacon.h>
#import <OvintaObjC/CustomerState.h>
#import <OvintaObjC/LocationAuthStatus.h>
#import <OvintaObjC/OrderState.h>

NS_ASSUME_NONNULL_BEGIN

/// The kinds of order events.
@interface OrderEventType : NSObject
@property(class, nonatomic, readonly, copy) NSString* locationUpdate;
@property(class, nonatomic, readonly, copy) NSString* stateChange;
@property(class, nonatomic, readonly, copy) NSString* permissionUpdate;
@property(class, nonatomic, readonly, copy) NSString* customerRating;
@end

/// One report from the customer's device to the service about an order. Absent fields are not sent.
@interface OrderEvent : OvintaRecord
/// A step of the customer's journey. An estimate is cut to whole seconds; one that no 64-bit
/// integer can hold counts as absent.
- (instancetype)initWithOrderID:(int64_t)orderID
                  customerState:(CustomerState)customerState
                     etaSeconds:(nullable NSNumber*)etaSeconds;
- (instancetype)initWithOrderID:(int64_t)orderID state:(OrderState)state;
- (instancetype)initWithOrderID:(int64_t)orderID
             locationAuthStatus:(LocationAuthStatus)locationAuthStatus;
- (instancetype)initWithOrderID:(int64_t)orderID
                 customerRating:(int64_t)customerRating
               customerComments:(nullable NSString*)customerComments;
@property(nonatomic, readonly) int64_t orderID;
@property(nonatomic, readonly, copy) NSString* eventType;
/// Degrees.
@property(nonatomic, readonly, copy, nullable) NSNumber* longitude;
@property(nonatomic, readonly, copy, nullable) NSNumber* latitude;
/// Metres; negative when the position is not valid.
@property(nonatomic, readonly, copy, nullable) NSNumber* accuracy;
/// Metres per second; negative when unknown.
@property(nonatomic, readonly, copy, nullable) NSNumber* speed;
@property(nonatomic, readonly, copy, nullable) NSArray<Beacon*>* beacons;
@property(nonatomic, readonly, copy, nullable) NSNumber* etaSeconds;
/// A `CustomerState`.
@property(nonatomic, readonly, copy, nullable) NSNumber* customerState;
/// An `OrderState`.
@property(nonatomic, readonly, copy, nullable) NSNumber* state;
/// A `LocationAuthStatus`.
@property(nonatomic, readonly, copy, nullable) NSNumber* locationAuthStatus;
@property(nonatomic, readonly, copy, nullable) NSNumber* customerRating;
@property(nonatomic, readonly, copy, nullable) NSString* customerComments;
@end

NS_ASSUME_NONNULL_END
