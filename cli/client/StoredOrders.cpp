#include "cli/client/StoredOrders.h"

#include <SQLiteCpp/SQLiteCpp.h>

namespace ovinta::cli {

std::filesystem::path orderStoreFile(const platform::Services& services) {
  const auto container = services.persistentContainers->makeContainer("VelkModel", {});
  return container->persistentStoreDescriptions().front().location;
}

std::variant<std::vector<StoredOrder>, std::string> readStoredOrders(
    const std::filesystem::path& file) {
  try {
    const SQLite::Database database(file.string(), SQLite::OPEN_READONLY);
    SQLite::Statement query(database,
                            R"(SELECT id, partnerIdentifier, siteId, state, customerState
                               FROM "Order" ORDER BY id)");
    std::vector<StoredOrder> orders;
    while (query.executeStep()) {
      orders.push_back({.id = query.getColumn(0).getInt64(),
                        .partnerIdentifier = query.getColumn(1).getString(),
                        .siteId = query.getColumn(2).getInt64(),
                        .state = query.getColumn(3).getInt64(),
                        .customerState = query.getColumn(4).getInt64()});
    }
    return orders;
  } catch (const std::exception& error) {
    return std::string(error.what());
  }
}

}  // namespace ovinta::cli
