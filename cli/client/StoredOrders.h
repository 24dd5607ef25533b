#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "OvintaSDK/OvintaSDK.h"
#include "platform/Services.h"
#include "platform/portable/Expected.h"

namespace ovinta::cli {

using platform::portable::Expected;

/// Where the services keep the order store; it need not exist yet.
std::filesystem::path orderStoreFile(const platform::Services& services);

/// The summaries in the installed services' order store, by rising number. A text says why it
/// cannot be read, also where there is no store yet.
Expected<std::vector<CoreOrder>, std::string> readStoredOrders();

}  // namespace ovinta::cli
