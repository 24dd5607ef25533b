#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "platform/PersistentContainer.h"
#include "platform/Services.h"

namespace ovinta {

/// Names the order store and, in the library's bundle, its data model.
inline constexpr std::string_view kOrderStoreName = "VelkModel";

/// The data model in the library's bundle; absent where it is missing or malformed.
inline std::optional<platform::ManagedObjectModel> orderStoreModel(
    const platform::Services& services) {
  const auto compiled = services.libraryBundle->resource(kOrderStoreName, "momd");
  return compiled ? platform::ManagedObjectModel::parse(*compiled) : std::nullopt;
}

/// Opens the order store with the data model in the library's bundle. A missing or malformed model
/// and a store that cannot be loaded end the process.
std::shared_ptr<platform::PersistentContainer> makeOrderStoreContainer(
    const platform::Services& services);

}  // namespace ovinta
