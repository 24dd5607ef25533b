#include "platform/simulation/Simulation.h"

#include <random>
#include <utility>

#include "platform/portable/Portable.h"
#include "platform/simulation/InMemoryOutbox.h"
#include "platform/simulation/http/NetworkURLSession.h"
#include "platform/simulation/time/TimeHoldingOperationQueueFactory.h"
#include "platform/simulation/time/TimeHoldingURLSession.h"

namespace ovinta::platform::simulation {
namespace {

template <class T>
void replace(std::shared_ptr<T>& service, std::shared_ptr<T> replacement) {
  if (replacement) service = std::move(replacement);
}

}  // namespace

Simulation::Simulation(Services base, Date start, SimulationReplacements replacements)
    : time_(start),
      services_(std::move(base)),
      location_(std::make_shared<SimulatedLocation>(time_.mainQueue(), services_.geodesy)),
      device_(std::make_shared<SimulatedDevice>()),
      notifications_(
          std::make_shared<SimulatedUserNotificationCenter>(time_.mainQueue(), services_.geodesy)),
      network_(std::make_shared<SimulatedNetworkMonitor>(time_.mainQueue())) {
  services_.clock = time_.clock();
  services_.mainQueue = time_.mainQueue();
  services_.location = location_;
  services_.device = device_;
  services_.userNotifications = notifications_;
  replace(services_.settings, std::move(replacements.settings));
  replace(services_.log, std::move(replacements.log));
  replace(services_.urlSession, std::move(replacements.urlSession));
  replace(services_.operationQueues, std::move(replacements.operationQueues));
  if (services_.urlSession) {
    services_.urlSession = std::make_shared<NetworkURLSession>(std::move(services_.urlSession),
                                                               network_, services_.mainQueue);
  }
  location_->onPosition([notifications = notifications_](const Location& location) {
    notifications->deviceMoved(location);
  });
}

void Simulation::holdTimeDuringRequests() {
  services_.urlSession = std::make_shared<TimeHoldingURLSession>(services_.urlSession, time_);
  services_.operationQueues =
      std::make_shared<TimeHoldingOperationQueueFactory>(services_.operationQueues, time_);
}

void Simulation::deliver(const DeliveryOptions& options, std::shared_ptr<Outbox> outbox) {
  portable::DeliveryParts parts;
  parts.outbox = outbox ? std::move(outbox) : std::make_shared<InMemoryOutbox>();
  parts.network = network_;
  parts.uptime = [clock = time_.clock()] { return clock->now().time_since_epoch(); };
  // Other ones for each launch, because the service takes equal keys for the same effect.
  const auto seed = static_cast<std::uint64_t>(time_.now().time_since_epoch().count());
  parts.random = [generator = std::mt19937_64(seed)]() mutable { return generator(); };
  parts.onCallbackThread = [mainQueue = time_.mainQueue()](auto task) {
    mainQueue->async(std::move(task));
  };
  portable::addDelivery(services_, options, parts);
}

}  // namespace ovinta::platform::simulation
