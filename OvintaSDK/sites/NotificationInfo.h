#pragma once

#include <optional>
#include <string>

#include "../../platform/Value.h"

namespace ovinta {

/// What the notifications about sites show.
struct NotificationInfo {
  std::string title;
  std::string content;
  /// Copied into the notification's user info.
  std::optional<platform::Dictionary> data = {};

  friend bool operator==(const NotificationInfo&, const NotificationInfo&) = default;
};

}  // namespace ovinta
