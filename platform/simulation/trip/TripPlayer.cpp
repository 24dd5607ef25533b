#include "platform/simulation/trip/TripPlayer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/FatalError.h"
#include "platform/portable/BeaconRules.h"
#include "platform/simulation/trip/Noise.h"
#include "platform/simulation/trip/TripPath.h"

namespace ovinta::platform::simulation {
namespace {

constexpr TimeInterval kPositionInterval = std::chrono::seconds(1);
/// The nearest distance, in metres, for which the path-loss model holds.
constexpr double kNearestMetres = 0.1;

RangedBeacon heard(const TripBeacon& beacon, double distance, GaussianNoise& noise) {
  const double loss =
      10 * portable::kFreeSpaceExponent * std::log10(std::max(distance, kNearestMetres));
  const double rssi = std::round(beacon.measuredPower - loss + beacon.noise * noise.next());
  return {.proximityUUID = beacon.proximityUUID,
          .major = beacon.major,
          .minor = beacon.minor,
          .rssi = static_cast<std::int64_t>(rssi),
          .accuracy =
              portable::pathLossDistance(rssi, beacon.measuredPower, portable::kFreeSpaceExponent)};
}

std::vector<TripPoint> checked(std::vector<TripPoint> points) {
  if (points.empty()) fatalError("A trip needs at least one point");
  return points;
}

}  // namespace

/// The trip under way. Its tasks end with it.
class TripPlayer::Run : public std::enable_shared_from_this<Run> {
 public:
  Run(Simulation& simulation, Trip trip, std::uint64_t seed)
      : simulation_(simulation),
        trip_(std::move(trip)),
        path_(checked(trip_.points), geodesy()),
        noise_(seed),
        duration_(path_.duration()) {
    for (const auto& change : trip_.permissionChanges) extendTo(change.offset);
    for (const auto& change : trip_.batteryChanges) extendTo(change.offset);
    for (const auto& tunnel : trip_.tunnels) extendTo(tunnel.to);
  }

  void start() {
    if (std::exchange(isStarted_, true)) return;
    for (const auto& change : trip_.permissionChanges) {
      schedule(change.offset, [change](Simulation& simulation) {
        simulation.location().setAuthorizationStatus(change.status);
      });
    }
    for (const auto& change : trip_.batteryChanges) {
      schedule(change.offset, [change](Simulation& simulation) {
        simulation.device().setBatteryState(change.state);
      });
    }
    for (const auto& tunnel : trip_.tunnels) {
      for (const TimeInterval border : {tunnel.from, tunnel.to}) {
        schedule(border, [this, border](Simulation& simulation) {
          simulation.network().setAvailable(!isInTunnel(border));
        });
      }
    }
    scheduleStep(TimeInterval::zero());
  }

  bool isFinished() const { return isFinished_; }
  TimeInterval duration() const { return duration_; }
  /// Where the device is as of the last step; absent before the first one.
  const std::optional<TripPath::State>& state() const { return state_; }

 private:
  const Geodesy& geodesy() const { return *simulation_.services().geodesy; }
  void extendTo(TimeInterval offset) { duration_ = std::max(duration_, offset); }

  void schedule(TimeInterval delay, std::function<void(Simulation&)> step) {
    simulation_.services().mainQueue->asyncAfter(delay,
                                                 [weak = weak_from_this(), step = std::move(step)] {
                                                   if (const auto self = weak.lock())
                                                     step(self->simulation_);
                                                 });
  }

  void scheduleStep(TimeInterval delay) {
    schedule(delay, [this, delay](Simulation&) { step(delay); });
  }

  bool isInTunnel(TimeInterval offset) const {
    return std::ranges::any_of(trip_.tunnels, [&](const TripTunnel& tunnel) {
      return tunnel.from <= offset && offset < tunnel.to;
    });
  }

  void step(TimeInterval passed) {
    elapsed_ += passed;
    const auto state = path_.at(elapsed_);
    state_ = state;
    hearBeacons(state.coordinate);
    simulation_.location().deliver(
        {.coordinate = positionNoise_.apply(state.coordinate, state.accuracy, noise_),
         .horizontalAccuracy = state.accuracy,
         .speed = state.speed,
         .timestamp = simulation_.time().now()});
    isFinished_ = elapsed_ >= duration_;
    if (!isFinished_) scheduleStep(std::min(kPositionInterval, duration_ - elapsed_));
  }

  void hearBeacons(Coordinate position) {
    std::vector<RangedBeacon> inRange;
    for (const auto& beacon : trip_.beacons) {
      const double distance = geodesy().distance(position, beacon.coordinate);
      if (distance < beacon.range) inRange.push_back(heard(beacon, distance, noise_));
    }
    simulation_.location().setBeaconsInRange(std::move(inRange));
  }

  Simulation& simulation_;
  const Trip trip_;
  const TripPath path_;
  GaussianNoise noise_;
  PositionNoise positionNoise_;
  TimeInterval duration_;
  TimeInterval elapsed_{};
  std::optional<TripPath::State> state_;
  bool isStarted_ = false;
  bool isFinished_ = false;
};

TripPlayer::TripPlayer(Simulation& simulation, Trip trip, std::uint64_t seed)
    : run_(std::make_shared<Run>(simulation, std::move(trip), seed)) {}

TripPlayer::~TripPlayer() = default;

void TripPlayer::start() { run_->start(); }

bool TripPlayer::isFinished() const { return run_->isFinished(); }

TimeInterval TripPlayer::duration() const { return run_->duration(); }

std::optional<Coordinate> TripPlayer::position() const {
  if (!run_->state()) return std::nullopt;
  return run_->state()->coordinate;
}

double TripPlayer::distanceAlong() const {
  return run_->state() ? run_->state()->distanceAlong : 0;
}

}  // namespace ovinta::platform::simulation
