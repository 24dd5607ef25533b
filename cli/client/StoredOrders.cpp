#include "cli/client/StoredOrders.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "OvintaSDK/core/OrderStoreContainer.h"

namespace ovinta::cli {
namespace {

/// What went wrong, without what was being done, which the command says in its own words.
std::string reasonOf(const platform::StoreError& error) {
  const std::string& text = error.localizedDescription;
  const std::size_t colon = text.find(": ");
  return colon == std::string::npos ? text : text.substr(colon + 2);
}

}  // namespace

std::filesystem::path orderStoreFile(const platform::Services& services) {
  const auto container = services.persistentContainers->makeContainer(kOrderStoreName, {});
  return container->persistentStoreDescriptions().front().location;
}

platform::Expected<std::vector<CoreOrder>, std::string> readStoredOrders() {
  const platform::Services& services = platform::services();
  // To load a store that is not there would make it.
  std::error_code ignored;
  if (!exists(orderStoreFile(services), ignored))
    return std::string("unable to open database file");
  auto model = orderStoreModel(services);
  if (!model) return std::string("the library has no data model");
  const auto container =
      services.persistentContainers->makeContainer(kOrderStoreName, *std::move(model));
  std::optional<platform::StoreError> failure;
  container->loadPersistentStores(
      [&failure](const auto& /*store*/, const auto& error) { failure = error; });
  if (failure) return reasonOf(*failure);

  const auto objects = container->newBackgroundContext()->fetch(CoreOrder::fetchRequest());
  if (!objects) return reasonOf(objects.error());
  std::vector<CoreOrder> orders(objects->begin(), objects->end());
  std::ranges::sort(orders, {}, &CoreOrder::id);
  return orders;
}

}  // namespace ovinta::cli
