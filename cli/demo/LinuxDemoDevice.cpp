#include "cli/demo/LinuxDemoDevice.h"

#include <algorithm>
#include <utility>

#include "cli/client/ClientServices.h"
#include "cli/client/ValueOf.h"
#include "cli/device/TripDevice.h"
#include "platform/linux/Linux.h"

namespace ovinta::cli {
namespace {

using namespace std::chrono_literals;
using platform::services;

/// How often GeoClue is told of the position, by the wall clock: a hurried trip goes far in a
/// second.
constexpr auto kFixInterval = 500ms;
constexpr platform::TimeInterval kLookInterval = 10ms;

platform::Services servicesOn(const replay::Rig& rig, const ClientOptions& options) {
  platform::linuxos::Options system;
  system.positionSource = platform::linuxos::PositionSource::geoclue;
  system.systemBusAddress = rig.busAddress();
  return clientServices(options, std::move(system));
}

}  // namespace

LinuxDemoDevice::LinuxDemoDevice(const DemoOptions& options, platform::simulation::Trip trip,
                                 Interruption& interruption, ObservedURLSession::Observer observer)
    : interruption_(interruption),
      rig_(valueOf(replay::Rig::start())),
      base_(servicesOn(*rig_, options.service)),
      path_(std::move(trip.points), *base_.geodesy),
      second_(wallSecond(options.trip.pace, path_.duration())) {
  platform::Services system = base_;
  session_ = std::make_shared<ObservedURLSession>(system.urlSession, std::move(observer));
  system.urlSession = session_;
  location_ = std::make_shared<ObservedLocationServices>(system.location, system.clock);
  system.location = location_;
  platform::install(std::move(system));
  tellPosition();
}

LinuxDemoDevice::~LinuxDemoDevice() {
  session_->disconnect();
  location_->onChanged(nullptr);
}

void LinuxDemoDevice::askPermission() { platform::linuxos::requestLocationAuthorization(); }

void LinuxDemoDevice::passSecond() {
  if (isOnTrip_) passed_ += 1s;
  serve([] { return false; },
        WallClock::now() + std::chrono::duration_cast<WallClock::duration>(second_));
}

bool LinuxDemoDevice::waitUntil(const std::function<bool()>& condition) {
  return serve(condition, WallClock::now() + kPatience);
}

bool LinuxDemoDevice::serve(const std::function<bool()>& condition, WallClock::time_point limit) {
  bool holds = false;
  const std::function<void()> look = [&] {
    holds = condition();
    const auto rest = std::chrono::ceil<platform::TimeInterval>(limit - WallClock::now());
    if (holds || rest <= 0s || interruption_.happened()) return platform::linuxos::quitMainLoop();
    services().mainQueue->asyncAfter(std::min(rest, kLookInterval), look);
  };
  services().mainQueue->async(look);
  platform::linuxos::runMainLoop();
  return holds;
}

void LinuxDemoDevice::tellPosition() {
  const platform::simulation::TripPath::State state = path_.at(passed_);
  rig_->send(
      {.coordinate = state.coordinate, .horizontalAccuracy = state.accuracy, .speed = state.speed});
  services().mainQueue->asyncAfter(kFixInterval, lifetime_.guard([this] { tellPosition(); }));
}

std::optional<platform::Coordinate> LinuxDemoDevice::position() const {
  if (!isOnTrip_) return std::nullopt;
  return path_.at(passed_).coordinate;
}

}  // namespace ovinta::cli
