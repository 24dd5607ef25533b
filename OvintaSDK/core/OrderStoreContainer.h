#pragma once

#include <memory>

#include "platform/PersistentContainer.h"

namespace ovinta {

/// Opens the order store with the data model in the library's bundle. A missing or malformed model
/// and a store that cannot be loaded end the process.
std::shared_ptr<platform::PersistentContainer> makeOrderStoreContainer();

}  // namespace ovinta
