#pragma once

#include "../../platform/NotificationCenter.h"

namespace ovinta {

/// The notifications that the library posts on the default notification centre
/// (`platform::services().notificationCenter`). They are delivered synchronously, on the thread
/// that posts: those about orders on the thread on which the callback of the call that caused them
/// runs, or inside the call that handed a push over; those about location on the main thread. What
/// there is to know travels as the notification's object, whose type stands with each name. The
/// names are constants; may be used from any thread.
struct SDKNotification {
  /// After each successful fetch. Object: `OrderList`, all orders; possibly empty.
  static constexpr platform::NotificationName ordersUpdated{"ordersUpdated"};
  /// When a fetch fails or is refused, save while another is under way, and when the look-up of a
  /// redemption code is refused. Object: `ErrorPtr`, or none.
  static constexpr platform::NotificationName ordersError{"ordersError"};
  /// When one local order changed through an event or a push. Object: `OrderPtr`.
  static constexpr platform::NotificationName orderUpdated{"orderUpdated"};
  /// When an order event, other than a position, could not be delivered or the service refused it.
  /// Object: `ErrorPtr`, or none.
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
