#pragma once

#include <memory>

#include "platform/Export.h"
#include "platform/NotificationCenter.h"
#include "platform/OperationQueue.h"
#include "platform/SettingsStore.h"

/// Implementations that need nothing but the standard library.
namespace ovinta::platform::standard {

OVINTA_EXPORT std::shared_ptr<NotificationCenter> makeNotificationCenter();

/// Queues with threads of their own, made when there is work for them.
OVINTA_EXPORT std::shared_ptr<OperationQueueFactory> makeOperationQueueFactory();

/// Settings that last as long as the object.
OVINTA_EXPORT std::shared_ptr<SettingsStore> makeInMemorySettingsStore();

}  // namespace ovinta::platform::standard
