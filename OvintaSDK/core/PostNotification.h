#pragma once

#include <any>

#include "platform/NotificationCenter.h"

namespace ovinta {

/// Posts on the default notification centre, synchronously on the calling thread, with no lock
/// held by the caller. An empty object stands for none.
void postNotification(platform::NotificationName name, std::any object = {});

}  // namespace ovinta
