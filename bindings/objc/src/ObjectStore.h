#pragma once

#include <memory>

#include "platform/PersistentContainer.h"

namespace twins {

/// What an `OvintaManagedObjectContext` holds: a transaction, and the store that must outlive it.
struct OpenStore {
  std::shared_ptr<ovinta::platform::PersistentContainer> container;
  std::unique_ptr<ovinta::platform::ManagedObjectContext> context;
};

}  // namespace twins
