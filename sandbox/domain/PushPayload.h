#pragma once

#include "platform/Value.h"

namespace ovinta::sandbox {

/// What a push notification about the order carries: its identifier and states and, when it has
/// one, the arrival estimate; texts only.
platform::Dictionary pushPayload(const platform::Dictionary& order);

}  // namespace ovinta::sandbox
