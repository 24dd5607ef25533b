#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/MainQueue.h"
#include "platform/linux/dbus/Service.h"
#include "platform/linux/location/PositionProvider.h"
#include "platform/linux/location/ServiceAttempts.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos {

inline constexpr const char* kGeoClueName = "org.freedesktop.GeoClue2";
inline constexpr const char* kGeoClueManagerPath = "/org/freedesktop/GeoClue2/Manager";
inline constexpr const char* kGeoClueManager = "org.freedesktop.GeoClue2.Manager";
/// The level of accuracy that stands for as exact as the device can. With a lower one GeoClue does
/// not ask a receiver of satellites at all.
inline constexpr std::uint32_t kGeoClueExact = 8;

/// One client of GeoClue, made anew whenever GeoClue has lost it.
class GeoClueStream : public PositionStream {
 public:
  struct Options {
    std::string desktopID;
    double distanceFilter = 0;
    /// What the application may do when GeoClue lets it in.
    PositionAccess granted = PositionAccess::granted;
    /// The time of silence after which nobody counts as having decided. The answer is still
    /// awaited.
    std::chrono::milliseconds answerTimeout;
    TimeInterval retryInterval;
  };

  GeoClueStream(std::shared_ptr<dbus::Bus> systemBus, std::shared_ptr<MainQueue> mainQueue,
                Options options, PositionHandlers handlers);
  GeoClueStream(const GeoClueStream&) = delete;
  GeoClueStream& operator=(const GeoClueStream&) = delete;
  ~GeoClueStream() override;

  void setDistanceFilter(double metres) override;

 private:
  void create();
  void use(std::string client);
  void failed(const dbus::Failure& failure);
  void forgetClient();
  void noteActive(bool isActive);
  void update(const dbus::Signal& signal);
  void setThreshold();
  void report(PositionAccess access);

  const std::shared_ptr<dbus::Bus> bus_;
  const std::shared_ptr<MainQueue> mainQueue_;
  Options options_;
  const PositionHandlers handlers_;
  /// The path of the client; empty while there is none.
  std::string client_;
  /// The service as the client's signals come from it; null while there is no client.
  std::unique_ptr<dbus::Service> service_;
  ServiceAttempts attempts_;
  /// The attempt to get and start a client; none while none is under way.
  std::optional<portable::Lifetime> attempt_;
};

}  // namespace ovinta::platform::linuxos
