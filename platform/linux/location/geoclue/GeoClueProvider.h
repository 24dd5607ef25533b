#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>

#include "platform/MainQueue.h"
#include "platform/linux/dbus/Service.h"
#include "platform/linux/location/PositionProvider.h"

namespace ovinta::platform::linuxos {

/// Positions from GeoClue 2. Each stream is a client of its own, made when the stream begins and
/// deleted with it.
class GeoClueProvider : public PositionProvider {
 public:
  struct Options {
    /// The name of the application's desktop file, which is how GeoClue knows it.
    std::string desktopID;
    /// The configuration of GeoClue, which says who is a component of the system.
    std::filesystem::path configuration = "/etc/geoclue/geoclue.conf";
    /// The time of silence after which nobody counts as having decided: GeoClue answers only when
    /// somebody is there to ask the user, and then when the user does. The answer is still awaited.
    std::chrono::milliseconds answerTimeout = std::chrono::seconds(30);
    /// The time from an attempt that failed to the next one.
    TimeInterval retryInterval = std::chrono::seconds(15);
  };

  GeoClueProvider(std::shared_ptr<dbus::Bus> systemBus, std::shared_ptr<MainQueue> mainQueue,
                  Options options);

  void findService(std::function<void(bool)> handler) override;
  std::shared_ptr<void> watchArrivals(const std::function<void()>& handler) override;
  std::unique_ptr<PositionStream> open(double distanceFilter, PositionHandlers handlers) override;

 private:
  const std::shared_ptr<dbus::Bus> bus_;
  const std::shared_ptr<MainQueue> mainQueue_;
  const Options options_;
  dbus::Service service_;
};

}  // namespace ovinta::platform::linuxos
