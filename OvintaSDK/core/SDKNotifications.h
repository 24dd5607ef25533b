#pragma once

#include "../../platform/NotificationCenter.h"

namespace ovinta {

/// The notifications that the library posts on the default notification centre
/// (`platform::services().notificationCenter`). They are delivered synchronously, on the thread
/// that posts: the orders ones usually on the thread of the network callback, the location ones on
/// the main thread. What there is to know travels as the notification's object.
struct SDKNotification {
  /// After each successful fetch. Object: `OrderList`, all orders; possibly empty.
  static constexpr platform::NotificationName ordersUpdated{"ordersUpdated"};
  /// When a fetch fails. Object: `ErrorPtr`, or none.
  static constexpr platform::NotificationName ordersError{"ordersError"};
  /// When one local order changed. Object: `std::shared_ptr<Order>`.
  static constexpr platform::NotificationName orderUpdated{"orderUpdated"};
  /// When the service refuses an order event. Object: `ErrorPtr`, or none.
  static constexpr platform::NotificationName orderEventError{"orderEventError"};
  /// Before a location is sent. Object: `platform::Location`.
  static constexpr platform::NotificationName locationUpdate{"locationUpdate"};
  /// When tracking is wanted and the user was not asked for permission yet. No object.
  static constexpr platform::NotificationName locationAuthorizationNotDetermined{
      "locationAuthorizationNotDetermined"};
  /// When tracking is wanted, or the permission changed, and it does not suffice. No object.
  static constexpr platform::NotificationName locationNotAuthorized{"locationNotAuthorized"};
  /// At every change of permission. No object.
  static constexpr platform::NotificationName locationAuthorizationChanged{
      "locationAuthorizationChanged"};
};

}  // namespace ovinta
