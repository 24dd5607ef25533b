#include "platform/linux/location/beacons/BeaconScanner.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/dbus/Service.h"
#include "platform/linux/location/beacons/BlueZDevices.h"
#include "platform/linux/location/beacons/BlueZDiscovery.h"
#include "platform/linux/location/beacons/BlueZObjects.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos {

/// What is known of BlueZ's objects while somebody listens.
class BeaconScanner::Scan {
 public:
  explicit Scan(BeaconScanner& scanner) : scanner_(scanner), service_(scanner.bus_, kBlueZName) {
    service_.onSignal(kBlueZRoot, kObjectManager, "InterfacesAdded",
                      [this](const dbus::Signal& signal) { add(signal.arguments); });
    service_.onSignal(kBlueZRoot, kObjectManager, "InterfacesRemoved",
                      [this](const dbus::Signal& signal) { remove(signal.arguments); });
    service_.onPropertiesChanged(
        "", kBlueZDevice,
        [this](const std::string& path, const dbus::Properties& changed) { note(path, changed); });
    service_.onPresence(false, [this](bool isPresent) { notePresence(isPresent); });
  }

  void stop() {
    for (auto& [path, discovery] : adapters_) discovery->stop();
  }

 private:
  void notePresence(bool isPresent) {
    adapters_.clear();
    devices_.forgetAll();
    presence_.reset();
    if (!isPresent) return;
    presence_.emplace();
    askObjects();
  }

  void askObjects() {
    service_.call(kBlueZRoot, kObjectManager, kGetObjects, {}, [this](const dbus::Reply& reply) {
      if (reply.failure) {
        scanner_.noteRefusal(*reply.failure);
        return askAgain();
      }
      for (const auto& [path, interfaces] : readBlueZObjects(reply)) {
        use(path, interfaces);
        const auto device = interfaces.find(kBlueZDevice);
        if (device != interfaces.end()) devices_.learn(path, device->second);
      }
    });
  }

  void askAgain() {
    if (!presence_) return;
    scanner_.mainQueue_->asyncAfter(scanner_.options_.retryInterval,
                                    presence_->guard([this] { askObjects(); }));
  }

  void add(const dbus::Variant& arguments) {
    const auto path = dbus::read<dbus::ObjectPath>(arguments, 0);
    const auto interfaces = dbus::read<BlueZInterfaces>(arguments, 1);
    if (!path || !interfaces) return;
    use(*path, *interfaces);
    const auto device = interfaces->find(kBlueZDevice);
    if (device != interfaces->end()) note(*path, device->second);
  }

  /// Has the object at the path discover, if it is an adapter.
  void use(const std::string& path, const BlueZInterfaces& interfaces) {
    if (!interfaces.contains(kBlueZAdapter) || adapters_.contains(path)) return;
    adapters_.emplace(path, std::make_unique<BlueZDiscovery>(
                                scanner_.bus_, scanner_.mainQueue_,
                                BlueZDiscovery::Options{path, scanner_.options_.retryInterval,
                                                        [this](const auto& failure) {
                                                          scanner_.noteRefusal(failure);
                                                        }}));
  }

  void remove(const dbus::Variant& arguments) {
    using Names = std::vector<std::string>;
    const auto path = dbus::read<dbus::ObjectPath>(arguments, 0);
    const auto names = dbus::read<Names>(arguments, 1).value_or(Names());
    if (!path) return;
    const auto isGone = [&](const char* interface) {
      return std::ranges::any_of(names, [&](const auto& name) { return name == interface; });
    };
    if (isGone(kBlueZAdapter)) adapters_.erase(*path);
    if (isGone(kBlueZDevice)) devices_.forget(*path);
  }

  void note(const std::string& path, const dbus::Properties& properties) {
    const auto sighting = devices_.note(path, properties);
    // This is the last step, because a listener may end the scan.
    if (sighting) scanner_.pass(*sighting);
  }

  BeaconScanner& scanner_;
  /// Lives as long as the BlueZ that is on the bus, and ends what was asked of it.
  std::optional<portable::Lifetime> presence_;
  std::map<std::string, std::unique_ptr<BlueZDiscovery>> adapters_;
  BlueZDevices devices_;
  dbus::Service service_;
};

BeaconScanner::BeaconScanner(std::shared_ptr<dbus::Bus> systemBus,
                             std::shared_ptr<MainQueue> mainQueue, std::shared_ptr<Log> log,
                             const Options& options)
    : bus_(std::move(systemBus)),
      mainQueue_(std::move(mainQueue)),
      log_(std::move(log)),
      options_(options) {}

BeaconScanner::~BeaconScanner() = default;

void BeaconScanner::add(BeaconListener& listener) {
  listeners_.push_back(&listener);
  if (!scan_) scan_ = std::make_unique<Scan>(*this);
}

void BeaconScanner::remove(BeaconListener& listener) {
  std::erase(listeners_, &listener);
  if (!listeners_.empty() || !scan_) return;
  scan_->stop();
  scan_ = nullptr;
}

void BeaconScanner::pass(const BeaconSighting& sighting) {
  // A copy is walked, because a listener may remove itself and others.
  for (BeaconListener* const listener : std::vector(listeners_)) {
    if (std::ranges::find(listeners_, listener) != listeners_.end()) listener->hear(sighting);
  }
}

void BeaconScanner::noteRefusal(const dbus::Failure& failure) {
  // That BlueZ is absent is no refusal: the bus tells when it comes.
  if (failure.name == dbus::kServiceUnknown || failure.name == dbus::kDisconnected) return;
  if (std::exchange(hasLoggedRefusal_, true)) return;
  log_->write("Bluetooth does not look for beacons: " + failure.message);
}

}  // namespace ovinta::platform::linuxos
