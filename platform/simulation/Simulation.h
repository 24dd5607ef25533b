#pragma once

#include <memory>

#include "../Outbox.h"
#include "../Services.h"
#include "SimulatedDevice.h"
#include "http/SimulatedNetworkMonitor.h"
#include "location/SimulatedLocation.h"
#include "location/SimulatedUserNotificationCenter.h"
#include "time/VirtualTime.h"

namespace ovinta::platform::simulation {

/// What else stands in for the service of that name in the base. A plain value.
struct SimulationReplacements {
  /// Null keeps the base's.
  std::shared_ptr<SettingsStore> settings = {};
  std::shared_ptr<Log> log = {};
  std::shared_ptr<URLSession> urlSession = {};
  std::shared_ptr<OperationQueueFactory> operationQueues = {};
};

/// One simulated device. Takes over the main thread: the one that makes it, on which alone it and
/// what it hands out are used, save where their types say more.
class Simulation {
 public:
  /// Replaces clock, main queue, location services, device and notification centre of the base,
  /// which must have its `geodesy`. Virtual time begins at `start`: that of a trip (`Trip::start`),
  /// any other, or `kDefaultTripStart` of `trip/Trip.h`, a fixed date. Positions that are delivered
  /// fire the location triggers.
  Simulation(Services base, Date start, SimulationReplacements replacements = {});

  /// Has virtual time stand still while an operation runs or a request is under way, and sends the
  /// requests one by one (see `TimeHoldingURLSession` and `TimeHoldingOperationQueueFactory`), so
  /// that work on real threads and a real service comes in the same order every time. From then on
  /// operations run only while the main thread waits inside `advance` or `waitUntil`. Call it once,
  /// before the services are installed.
  void holdTimeDuringRequests();

  /// Has the services deliver what could not be sent, as docs/delivery.md says, with virtual time,
  /// random numbers that are the same every time, and the simulated network as the one that tells.
  /// What waits is kept in the outbox; null stands for one that goes with this object. What is
  /// given up outside of an answer is reported by a task of the main queue. Call it at most once,
  /// after `holdTimeDuringRequests`, before the services are installed.
  void deliver(const DeliveryOptions& options = {}, std::shared_ptr<Outbox> outbox = nullptr);

  /// The full set, to be given to `platform::install`. The services may outlive this object.
  const Services& services() const { return services_; }

  /// What the test moves the device with; each lives as long as this object.
  VirtualTime& time() { return time_; }
  SimulatedLocation& location() { return *location_; }
  SimulatedDevice& device() { return *device_; }
  SimulatedUserNotificationCenter& notifications() { return *notifications_; }
  /// Where it is not there, no request reaches the service, delivery or not: those that begin fail
  /// as they do on Linux without a route, and those whose answer comes have lost their connection.
  /// The former are told by a task of the main queue, whatever thread the session of the base calls
  /// back on; after `holdTimeDuringRequests` that is in turn with the others. While it is there,
  /// requests and answers pass as they are. It tells delivery, where there is one.
  SimulatedNetworkMonitor& network() { return *network_; }

 private:
  VirtualTime time_;
  Services services_;
  std::shared_ptr<SimulatedLocation> location_;
  std::shared_ptr<SimulatedDevice> device_;
  std::shared_ptr<SimulatedUserNotificationCenter> notifications_;
  std::shared_ptr<SimulatedNetworkMonitor> network_;
};

}  // namespace ovinta::platform::simulation
