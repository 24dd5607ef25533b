#import <OvintaObjC/Ovinta.h>

NS_ASSUME_NONNULL_BEGIN

/// The names of the notifications that the library posts on the default `NSNotificationCenter`.
/// They are delivered synchronously, on the thread that posts: those about orders on the thread on
/// which the callback of the call that caused them runs, or inside the call that handed a push
/// over; those about location on the main thread. What there is to know travels as the
/// notification's object; there is no user info. Posting begins when the first name or manager is
/// asked for: install the platform's services before.
@interface Ovinta (Notifications)
/// After each successful fetch. Object: `NSArray<Order*>`, all orders; possibly empty.
@property(class, nonatomic, readonly, copy) NSNotificationName ordersUpdated;
/// When a fetch fails or is refused, save while another is under way, and when the look-up of a
/// redemption code is refused. Object: `OvintaError`, or none.
@property(class, nonatomic, readonly, copy) NSNotificationName ordersError;
/// When one local order changed through an event or a push. Object: `Order`.
@property(class, nonatomic, readonly, copy) NSNotificationName orderUpdated;
/// When an order event, other than a position, could not be delivered or the service refused it.
/// Object: `OvintaError`, or none.
@property(class, nonatomic, readonly, copy) NSNotificationName orderEventError;
/// Before a location is sent. Object: `OvintaLocation`.
@property(class, nonatomic, readonly, copy) NSNotificationName locationUpdate;
/// When tracking is wanted and the user was not asked for permission yet. No object.
@property(class, nonatomic, readonly, copy) NSNotificationName locationAuthorizationNotDetermined;
/// When tracking is wanted, or the permission changed, and it does not suffice. No object.
@property(class, nonatomic, readonly, copy) NSNotificationName locationNotAuthorized;
/// At every change of permission. No object.
@property(class, nonatomic, readonly, copy) NSNotificationName locationAuthorizationChanged;
@end

NS_ASSUME_NONNULL_END
