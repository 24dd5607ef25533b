#include "OvintaSDK/core/OrderStoreContainer.h"

#include <string>

#include "platform/FatalError.h"

namespace ovinta {
namespace {

std::string description(const std::map<std::string, std::string>& details) {
  std::string text;
  for (const auto& [name, value] : details) {
    text += (text.empty() ? "[" : ", ") + name + ": " + value;
  }
  return text.empty() ? "[:]" : text + "]";
}

}  // namespace

std::shared_ptr<platform::PersistentContainer> makeOrderStoreContainer(
    const platform::Services& services) {
  auto model = orderStoreModel(services);
  if (!model) platform::fatalError();

  auto container = services.persistentContainers->makeContainer(kOrderStoreName, *std::move(model));
  container->loadPersistentStores([&](const auto&, const auto& error) {
    if (error) {
      platform::fatalError(
          "Unresolved error " + error->localizedDescription + ", " + description(error->userInfo),
          {.file = "OvintaSDK/Ovinta", .line = 155});
    }
    const auto stores = container->persistentStoreDescriptions();
    if (stores.empty()) platform::fatalError();
    services.log->write("Container location is " + stores.front().location);
  });
  return container;
}

}  // namespace ovinta
