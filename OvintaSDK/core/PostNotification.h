#pragma once

#include <any>

#include "OvintaSDK/api/OvintaError.h"
#include "platform/NotificationCenter.h"

namespace ovinta {

/// Posts on the default notification centre, synchronously on the calling thread, with no lock
/// held by the caller. An empty object stands for none.
void postNotification(platform::NotificationName name, std::any object = {});

/// The same with an error as the object, or none when it is null.
void postNotification(platform::NotificationName name, const ErrorPtr& error);

}  // namespace ovinta
