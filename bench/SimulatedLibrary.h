#pragma once

#include <cstddef>
#include <memory>

#include "OvintaSDK/core/facade/Library.h"
#include "OvintaSDK/model/Order.h"
#include "platform/Services.h"
#include "platform/simulation/location/SimulatedLocation.h"
#include "platform/simulation/time/DrivenOperationQueueFactory.h"
#include "platform/simulation/time/VirtualTime.h"

namespace ovinta::bench {

/// A library on a device where nothing happens by itself: time and queues go on when they are told
/// to, requests are answered by nobody. Nobody is signed in, and the user may be followed. Main
/// thread only.
class SimulatedLibrary {
 public:
  /// With an order store in memory.
  SimulatedLibrary();
  explicit SimulatedLibrary(std::shared_ptr<platform::PersistentContainerFactory> store);

  platform::simulation::VirtualTime time;
  std::shared_ptr<platform::simulation::DrivenOperationQueueFactory> queues;
  std::shared_ptr<platform::simulation::SimulatedLocation> location;
  const platform::Services services;
  Library library;
};

/// Open orders with the identifiers 1 to `count`, each at a site with a beacon region of its own.
/// Each call makes others.
OrderList makeOpenOrders(std::size_t count);

}  // namespace ovinta::bench
