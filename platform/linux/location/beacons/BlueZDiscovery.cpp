#include "platform/linux/location/beacons/BlueZDiscovery.h"

#include <string_view>
#include <utility>

#include "platform/linux/location/beacons/BlueZObjects.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr std::string_view kNotReady = "org.bluez.Error.NotReady";
constexpr std::string_view kInProgress = "org.bluez.Error.InProgress";

/// The filter of the discovery. Without one BlueZ tells of a strength only when it has changed a
/// lot; one by services would drop beacons, which offer none.
dbus::Properties filter() {
  return {{"Transport", dbus::write("le")}, {"DuplicateData", dbus::write(true)}};
}

void tellToStop(std::shared_ptr<dbus::Bus> bus, const std::string& adapter) {
  dbus::Service(std::move(bus), kBlueZName).tell(adapter, kBlueZAdapter, "StopDiscovery");
}

}  // namespace

BlueZDiscovery::BlueZDiscovery(std::shared_ptr<dbus::Bus> systemBus,
                               std::shared_ptr<MainQueue> mainQueue, Options options)
    : bus_(std::move(systemBus)),
      mainQueue_(std::move(mainQueue)),
      options_(std::move(options)),
      service_(bus_, kBlueZName) {
  service_.onPropertiesChanged(
      options_.adapter, kBlueZAdapter,
      [this](const std::string&, const dbus::Properties& changed) { note(changed); });
  ask();
}

void BlueZDiscovery::ask() {
  service_.getProperties(
      options_.adapter, kBlueZAdapter, [this](const dbus::Properties& all) { note(all); },
      [this](const dbus::Failure& failure) {
        options_.onRefusal(failure);
        later(&BlueZDiscovery::ask);
      });
}

void BlueZDiscovery::stop() {
  // The adapter is told to stop unless it is idle, because a start that seems to have failed may
  // have come about when the answer was late.
  if (std::exchange(step_, Step::idle) == Step::idle) return;
  tellToStop(bus_, options_.adapter);
}

void BlueZDiscovery::note(const dbus::Properties& changed) {
  const bool wasDiscovering = isDiscovering_;
  isPowered_ = dbus::read<bool>(changed, "Powered").value_or(isPowered_);
  isDiscovering_ = dbus::read<bool>(changed, "Discovering").value_or(isDiscovering_);
  // An attempt under way is judged by its answer.
  if (step_ == Step::starting) return;
  if (!isPowered_) {
    step_ = Step::idle;
  } else if (step_ == Step::idle) {
    start();
  } else if (step_ == Step::running && wasDiscovering && !isDiscovering_) {
    retryLater();
  }
}

void BlueZDiscovery::start() {
  step_ = Step::starting;
  service_.call(options_.adapter, kBlueZAdapter, "SetDiscoveryFilter", dbus::arguments(filter()),
                [this](const dbus::Reply& reply) {
                  if (reply.failure) return noteStarted(reply);
                  startFiltered();
                });
}

void BlueZDiscovery::startFiltered() {
  bus_->call({.service = kBlueZName,
              .object = options_.adapter,
              .interface = kBlueZAdapter,
              .method = "StartDiscovery"},
             [this, life = lifetime_.watch(), bus = std::weak_ptr(bus_),
              adapter = options_.adapter](const dbus::Reply& reply) {
               if (!life.expired()) return noteStarted(reply);
               // BlueZ refuses to stop what it has not answered yet, so the start that came through
               // after the end is stopped here.
               if (const auto found = bus.lock()) tellToStop(found, adapter);
             });
}

void BlueZDiscovery::noteStarted(const dbus::Reply& reply) {
  const std::string error = reply.failure ? reply.failure->name : "";
  step_ = Step::idle;
  if (isPowered_) {
    // The discovery runs also where BlueZ says that it is in progress: an application has one
    // discovery, which an earlier start may have begun whose answer came too late.
    const bool runs = error.empty() || (error == kInProgress && isDiscovering_);
    if (runs) {
      step_ = Step::running;
    } else {
      retryLater();
    }
  }
  if (!error.empty() && error != kInProgress && error != kNotReady) {
    options_.onRefusal(*reply.failure);
  }
}

void BlueZDiscovery::retryLater() {
  step_ = Step::waiting;
  later(&BlueZDiscovery::retry);
}

void BlueZDiscovery::retry() {
  if (step_ == Step::waiting) start();
}

void BlueZDiscovery::later(void (BlueZDiscovery::*step)()) {
  mainQueue_->asyncAfter(options_.retryInterval,
                         lifetime_.guard([this, step] { (this->*step)(); }));
}

}  // namespace ovinta::platform::linuxos
