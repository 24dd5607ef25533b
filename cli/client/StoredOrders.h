#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "platform/Services.h"

namespace ovinta::cli {

/// A row of the order store.
struct StoredOrder {
  std::int64_t id = 0;
  std::string partnerIdentifier;
  std::int64_t siteId = 0;
  std::int64_t state = 0;
  std::int64_t customerState = 0;
};

/// Where the services keep the order store; it need not exist yet.
std::filesystem::path orderStoreFile(const platform::Services& services = platform::services());

/// Reads the order store's file the way any SQLite tool would; a text says why that failed.
std::variant<std::vector<StoredOrder>, std::string> readStoredOrders(
    const std::filesystem::path& file);

}  // namespace ovinta::cli
