#pragma once

#include <optional>
#include <string>

#include "../../platform/Value.h"

namespace ovinta {

/// What the notifications about sites show, the same for each site. A plain value.
struct NotificationInfo {
  /// Heading and text, in words for people.
  std::string title;
  std::string content;
  /// What the application wants back with the notification: copied into its user info. An entry
  /// under `NotifyManager::kSourceName` is replaced by the library's.
  std::optional<platform::Dictionary> data = {};

  friend bool operator==(const NotificationInfo&, const NotificationInfo&) = default;
};

}  // namespace ovinta
