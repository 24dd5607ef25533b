#import <OvintaObjC/Ovinta.h>

NS_ASSUME_NONNULL_BEGIN

/// The names of the notifications that the library posts on the default `NSNotificationCenter`.
/// They are delivered synchronously, on the thread that posts: the orders ones usually on the
/// thread of the network callback, the location ones on the main thread. What there is to know
/// travels as the notification's object; there is no user info. Posting begins when the first name
/// or manager is asked for: install the platform's services before.
@interface Ovinta (Notifications)
/// After each successful fetch. Object: `NSArray<Order*>`, all orders; possibly empty.
@property(class, nonatomic, readonly, copy) NSNotificationName ordersUpdated;
/// When a fetch fails. Object: `OvintaError`, or none.
@property(class, nonatomic, readonly, copy) NSNotificationName ordersError;
/// When one local order changed. Object: `Order`.
@property(class, nonatomic, readonly, copy) NSNotificationName orderUpdated;
/// When the service refuses an order event. Object: `OvintaError`, or none.
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
