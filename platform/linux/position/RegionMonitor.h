#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/linux/position/PositionHub.h"
#include "platform/linux/position/RegionSide.h"

namespace ovinta::platform::linux {

/// Watches circles on the map. Follows the position only while there are any. Main thread only.
class RegionMonitor {
 public:
  /// Called at each crossing of a border, never inside a call of the monitor's methods; it may
  /// change the regions, but not destroy the monitor.
  using Handler = std::function<void(const CircularRegion&, RegionEvent)>;

  RegionMonitor(std::shared_ptr<PositionHub> hub, std::shared_ptr<Geodesy> geodesy,
                Handler handler);
  RegionMonitor(const RegionMonitor&) = delete;
  RegionMonitor& operator=(const RegionMonitor&) = delete;

  /// The region replaces one of the same identifier. Where the device is when it starts is no
  /// crossing.
  void start(const CircularRegion& region);
  void stop(const std::string& identifier);

 private:
  struct Watched {
    CircularRegion region;
    /// The last one that was certain.
    RegionSide side = RegionSide::unknown;
  };

  void judge(const Location& fix);

  const std::shared_ptr<PositionHub> hub_;
  const std::shared_ptr<Geodesy> geodesy_;
  const Handler handler_;
  std::vector<Watched> watched_;
  std::unique_ptr<PositionStream> stream_;
};

}  // namespace ovinta::platform::linux
