#include "platform/linux/Linux.h"

#include "platform/standard/Standard.h"

namespace ovinta::platform::linux {

Services makeServices(const Options&) {
  Services services;
  services.operationQueues = standard::makeOperationQueueFactory();
  services.notificationCenter = standard::makeNotificationCenter();
  services.settings = standard::makeInMemorySettingsStore();
  return services;
}

}  // namespace ovinta::platform::linux
