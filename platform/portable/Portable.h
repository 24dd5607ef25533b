#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "../Bundle.h"
#include "../Delivery.h"
#include "../Export.h"
#include "../Log.h"
#include "../NetworkMonitor.h"
#include "../NotificationCenter.h"
#include "../OperationQueue.h"
#include "../Outbox.h"
#include "../PersistentContainer.h"
#include "../Services.h"
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

/// What delivery stands on, beside the clock, the log, the main queue, the settings and the session
/// of the services. None may be empty. A plain value.
struct DeliveryParts {
  /// Where events wait.
  std::shared_ptr<Outbox> outbox;
  /// Tells when it is worth while to try again.
  std::shared_ptr<NetworkMonitor> network;
  /// The time since some instant, which never goes back and does not stand still while the device
  /// sleeps. Called from any thread.
  std::function<TimeInterval()> uptime;
  /// Random numbers of 64 bits; called by one thread at a time.
  std::function<std::uint64_t()> random;
  /// Runs a task on the callback thread of the services' session, soon and never inside the call.
  /// Called from any thread.
  std::function<void(std::function<void()> task)> onCallbackThread;
};

/// Has the services deliver what could not be sent: puts a session and settings in place of theirs,
/// which use theirs, and sets `delivery`. To be called before the services are installed. What an
/// earlier process has left in the outbox is read inside the call, and goes out soon after.
OVINTA_EXPORT void addDelivery(Services& services, const DeliveryOptions& options,
                               const DeliveryParts& parts);

}  // namespace ovinta::platform::portable
