#include "platform/linux/position/RegionMonitor.h"

#include <utility>

namespace ovinta::platform::linux {
namespace {

/// Fine enough for the surroundings of a store, and nothing for a device that lies still.
constexpr double kDistanceFilterMetres = 10;

}  // namespace

RegionMonitor::RegionMonitor(std::shared_ptr<PositionHub> hub, std::shared_ptr<Geodesy> geodesy,
                             Handler handler)
    : hub_(std::move(hub)), geodesy_(std::move(geodesy)), handler_(std::move(handler)) {}

void RegionMonitor::start(const CircularRegion& region) {
  std::erase_if(watched_,
                [&](const Watched& other) { return other.region.identifier == region.identifier; });
  watched_.push_back({region});
  if (stream_) return;
  stream_ = hub_->open(kDistanceFilterMetres, [this](const Location& fix) { judge(fix); });
}

void RegionMonitor::stop(const std::string& identifier) {
  std::erase_if(watched_,
                [&](const Watched& other) { return other.region.identifier == identifier; });
  if (watched_.empty()) stream_ = nullptr;
}

void RegionMonitor::judge(const Location& fix) {
  std::vector<std::pair<CircularRegion, RegionEvent>> events;
  for (auto& [region, side] : watched_) {
    const RegionSide now = sideOf(region, fix, *geodesy_);
    if (now == RegionSide::unknown) continue;
    const auto event = eventBetween(std::exchange(side, now), now, region);
    if (event) events.emplace_back(region, *event);
  }
  for (const auto& [region, event] : events) handler_(region, event);
}

}  // namespace ovinta::platform::linux
