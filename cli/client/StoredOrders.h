#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "OvintaSDK/OvintaSDK.h"
#include "platform/Expected.h"
#include "platform/Services.h"

namespace ovinta::cli {

/// Where the services keep the order store; it need not exist yet.
std::filesystem::path orderStoreFile(const platform::Services& services);

/// The summaries in the installed services' order store, by rising number. A text says why it
/// cannot be read, also where there is no store yet.
platform::Expected<std::vector<CoreOrder>, std::string> readStoredOrders();

}  // namespace ovinta::cli
