#pragma once

#include <vector>

#include "platform/UserNotificationCenter.h"

namespace ovinta::cli {

/// The pending requests that are the library's own. Waits for the centre, which must answer on
/// another thread.
std::vector<platform::UserNotificationRequest> pendingNotifications(
    platform::UserNotificationCenter& center);

}  // namespace ovinta::cli
