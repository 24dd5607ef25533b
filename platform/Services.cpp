#include "platform/Services.h"

#include <atomic>
#include <mutex>
#include <string>
#include <utility>

#include "platform/DefaultServices.h"
#include "platform/FatalError.h"

namespace ovinta::platform {
namespace {

/// One set of services that was once in force. References to it were handed out for ever, so the
/// chain only grows.
struct Installed {
  Services services;
  const Installed* previous = nullptr;
};

std::atomic<const Installed*> current{nullptr};

void refuseMissing(const Services& services) {
  const std::pair<const char*, bool> members[] = {
      {"clock", services.clock != nullptr},
      {"log", services.log != nullptr},
      {"mainQueue", services.mainQueue != nullptr},
      {"operationQueues", services.operationQueues != nullptr},
      {"notificationCenter", services.notificationCenter != nullptr},
      {"settings", services.settings != nullptr},
      {"mainBundle", services.mainBundle != nullptr},
      {"libraryBundle", services.libraryBundle != nullptr},
      {"text", services.text != nullptr},
      {"dateFormatters", services.dateFormatters != nullptr},
      {"urls", services.urls != nullptr},
      {"urlSession", services.urlSession != nullptr},
      {"persistentContainers", services.persistentContainers != nullptr},
      {"geodesy", services.geodesy != nullptr},
      {"location", services.location != nullptr},
      {"userNotifications", services.userNotifications != nullptr},
      {"device", services.device != nullptr},
  };
  for (const auto& [name, present] : members) {
    if (!present) fatalError(std::string("Platform service missing: ") + name);
  }
}

}  // namespace

void install(Services services) {
  refuseMissing(services);
  auto* installed = new Installed{std::move(services), current.load()};
  while (!current.compare_exchange_weak(installed->previous, installed)) {
  }
}

const Services& services() {
  if (const auto* installed = current.load(std::memory_order_acquire)) return installed->services;
  static std::once_flag once;
  std::call_once(once, [] {
    auto* made = new Installed{makeDefaultServices()};
    const Installed* none = nullptr;
    if (!current.compare_exchange_strong(none, made)) delete made;
  });
  return current.load()->services;
}

}  // namespace ovinta::platform
