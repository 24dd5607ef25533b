#include "OvintaSDK/core/OrderStoreContainer.h"

#include <string>

#include "OvintaSDK/core/LogLine.h"
#include "platform/FatalError.h"
#include "platform/Services.h"

namespace ovinta {
namespace {

constexpr std::string_view kModelName = "VelkModel";

std::string description(const std::map<std::string, std::string>& details) {
  std::string text;
  for (const auto& [name, value] : details) {
    text += (text.empty() ? "[" : ", ") + name + ": " + value;
  }
  return text.empty() ? "[:]" : text + "]";
}

}  // namespace

std::shared_ptr<platform::PersistentContainer> makeOrderStoreContainer() {
  const platform::Services& services = platform::services();
  const auto compiled = services.libraryBundle->resource(kModelName, "momd");
  if (!compiled) platform::fatalError();
  auto model = platform::ManagedObjectModel::parse(*compiled);
  if (!model) platform::fatalError();

  auto container = services.persistentContainers->makeContainer(kModelName, *std::move(model));
  container->loadPersistentStores([&container](const auto&, const auto& error) {
    if (error) {
      platform::fatalError(
          "Unresolved error " + error->localizedDescription + ", " + description(error->userInfo),
          {.file = "OvintaSDK/Ovinta", .line = 155});
    }
    const auto stores = container->persistentStoreDescriptions();
    if (stores.empty()) platform::fatalError();
    logLine("Container location is " + stores.front().location);
  });
  return container;
}

}  // namespace ovinta
