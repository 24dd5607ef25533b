#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Region.h"
#include "Value.h"

namespace ovinta::platform {

/// What is heard when a notification is shown: nothing, or the sound of the system.
enum class NotificationSound { none, defaultSound };

/// What a local notification shows and carries. A plain value.
struct UserNotificationContent {
  /// Heading and text, in words for people.
  std::string title;
  std::string body;
  /// What is heard with it.
  NotificationSound sound = NotificationSound::none;
  /// What the application gets back when the user clicks the notification.
  Dictionary userInfo;

  friend bool operator==(const UserNotificationContent&, const UserNotificationContent&) = default;
};

/// Fires when the user crosses the border of the region in a direction that the region asks for.
/// The first position known after the request was added, inside or outside, crosses nothing. A
/// plain value.
struct LocationNotificationTrigger {
  /// The region and, in it, the directions.
  CircularRegion region;
  /// False: the request leaves the pending list when it fires.
  bool repeats = false;

  friend bool operator==(const LocationNotificationTrigger&,
                         const LocationNotificationTrigger&) = default;
};

/// A notification and when it is to be shown. A plain value.
struct UserNotificationRequest {
  /// Unique among the pending requests.
  std::string identifier;
  /// What is shown, and when.
  UserNotificationContent content;
  LocationNotificationTrigger trigger;

  friend bool operator==(const UserNotificationRequest&, const UserNotificationRequest&) = default;
};

/// Why a request was not accepted. A plain value.
struct UserNotificationError {
  /// A sentence in English.
  std::string localizedDescription;
};

/// Shows local notifications and keeps those that still wait for their trigger, also across
/// restarts. Methods may be called from any thread and return at once; what they ask for takes
/// effect in the order of the calls. Completions are called exactly once, never inside the call, on
/// a thread of the implementation's choice.
class UserNotificationCenter {
 public:
  virtual ~UserNotificationCenter() = default;

  /// Hands over the requests that have not fired yet, or are just being shown.
  virtual void getPendingNotificationRequests(
      std::function<void(std::vector<UserNotificationRequest>)> completion) = 0;

  /// Drops pending requests; unknown identifiers are ignored.
  virtual void removePendingNotificationRequests(std::vector<std::string> identifiers) = 0;

  /// Adds a request, in place of a pending one with the same identifier. The completion, which may
  /// be empty, receives the error, or absent when the request was accepted.
  virtual void add(UserNotificationRequest request,
                   std::function<void(std::optional<UserNotificationError>)> completion) = 0;
};

}  // namespace ovinta::platform
