#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/MainQueue.h"
#include "platform/linux/dbus/Service.h"
#include "platform/linux/position/PositionProvider.h"
#include "platform/linux/position/ServiceAttempts.h"
#include "platform/standard/Life.h"

namespace ovinta::platform::linux {

inline constexpr const char* kGeoClueName = "org.freedesktop.GeoClue2";
inline constexpr const char* kGeoClueManagerPath = "/org/freedesktop/GeoClue2/Manager";
inline constexpr const char* kGeoClueManager = "org.freedesktop.GeoClue2.Manager";
/// As exact as the device can. With less, a receiver of satellites is not asked at all.
inline constexpr std::uint32_t kGeoClueExact = 8;

/// One client of GeoClue, made anew whenever GeoClue has lost it.
class GeoClueStream : public PositionStream {
 public:
  struct Settings {
    std::string desktopID;
    double distanceFilter = 0;
    /// What it means when GeoClue lets the application in.
    PositionAccess granted = PositionAccess::granted;
    /// After which silence means that nobody has decided. The answer is awaited on.
    std::chrono::milliseconds answerTimeout;
    TimeInterval retryInterval;
  };

  GeoClueStream(std::shared_ptr<dbus::Bus> systemBus, std::shared_ptr<MainQueue> mainQueue,
                Settings settings, PositionHandlers handlers);
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
  Settings settings_;
  const PositionHandlers handlers_;
  /// The path of the client; empty while there is none.
  std::string client_;
  /// Hears of the client; null while there is none.
  std::unique_ptr<dbus::Service> service_;
  ServiceAttempts attempts_;
  /// Expires with the attempt under way.
  std::optional<standard::Life> attempt_;
};

}  // namespace ovinta::platform::linux
