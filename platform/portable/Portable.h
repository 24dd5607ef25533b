#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "../Bundle.h"
#include "../Export.h"
#include "../Log.h"
#include "../NotificationCenter.h"
#include "../OperationQueue.h"
#include "../PersistentContainer.h"
#include "../SettingsStore.h"

/// Implementations that serve every platform. Each function may be called from any thread.
namespace ovinta::platform::portable {

/// A centre of its own: observers are called synchronously on the thread that posts.
OVINTA_EXPORT std::shared_ptr<NotificationCenter> makeNotificationCenter();

/// Queues with threads of their own, made when there is work for them.
OVINTA_EXPORT std::shared_ptr<OperationQueueFactory> makeOperationQueueFactory();

/// Settings that last as long as the object.
OVINTA_EXPORT std::shared_ptr<SettingsStore> makeInMemorySettingsStore();

/// Object stores that last as long as the factory: containers of one name share one store.
OVINTA_EXPORT std::shared_ptr<PersistentContainerFactory> makeInMemoryPersistentContainerFactory();

/// A log that hands each line to `write`, on the thread that logs and never two at a time; `write`
/// must neither log nor throw. Without a function it is silent.
OVINTA_EXPORT std::shared_ptr<Log> makeLog(std::function<void(std::string_view line)> write = {});

/// The library's own bundle, with its version and its data model, which are compiled in.
OVINTA_EXPORT std::shared_ptr<Bundle> makeLibraryBundle();

}  // namespace ovinta::platform::portable
