#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "../../Date.h"
#include "../../Device.h"
#include "../../Location.h"
#include "../../LocationManager.h"
#include "../../UUID.h"

namespace ovinta::platform::simulation {

/// Where the device is at an instant of a trip. A plain value.
struct TripPoint {
  /// Since the trip began.
  TimeInterval offset{};
  /// The true position.
  Coordinate coordinate{};
  /// Metres per second; negative: that of the way to the next point.
  double speed = -1;
  /// Radius in metres within which two of three positions lie; 0 for positions without noise.
  double accuracy = 5;
};

/// A beacon that stands somewhere along a trip. The device hears it at a strength that falls with
/// the distance d, in metres, by the log-distance path-loss model with log-normal shadowing:
///
///     rssi = measuredPower - 10 * n * log10(d) + noise,   n = 2 (free space)
///
/// (T. S. Rappaport, Wireless Communications: Principles and Practice, 2nd ed. 2002, section 4.9),
/// and estimates the distance from that strength by the same formula, without the noise. A plain
/// value.
struct TripBeacon {
  /// What the beacon sends of itself.
  UUID proximityUUID{};
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  /// Where it stands.
  Coordinate coordinate{};
  /// Metres from which on it is not heard.
  double range = 40;
  /// Strength at a distance of 1 m, in dBm.
  double measuredPower = -59;
  /// Standard deviation of the strength, in dB.
  double noise = 3;
};

/// A change of the permission to follow the user. A plain value.
struct TripPermissionChange {
  /// Since the trip began, and the permission from then on.
  TimeInterval offset{};
  AuthorizationStatus status = kAuthorizationNotDetermined;
};

/// A change of the battery. A plain value.
struct TripBatteryChange {
  /// Since the trip began, and the state from then on.
  TimeInterval offset{};
  BatteryState state = BatteryState::unknown;
};

/// A stretch of a trip on which the service cannot be reached: a tunnel, a parking garage. A plain
/// value.
struct TripTunnel {
  /// Both since the trip began. The device is in it from the first instant on, at the second no
  /// more.
  TimeInterval from{};
  TimeInterval to{};
};

/// When a trip takes place that says nothing about it: 2026-03-14T15:00:00Z.
inline constexpr Date kDefaultTripStart{std::chrono::sys_days{std::chrono::year{2026} / 3 / 14} +
                                        std::chrono::hours(15)};

/// Metres of uncertainty for each unit of the dilution of precision: a usual receiver's range
/// error.
inline constexpr double kMetresPerDilution = 5;

/// What happens to a device on its way. Between two points it moves evenly. A plain value.
struct Trip {
  /// In the order of their offsets, at least one.
  std::vector<TripPoint> points;
  /// All that stand somewhere along the way, and what changes on it, each in any order.
  std::vector<TripBeacon> beacons;
  std::vector<TripPermissionChange> permissionChanges;
  std::vector<TripBatteryChange> batteryChanges;
  /// When it takes place; for making the `Simulation`, a player does not look at it.
  Date start = kDefaultTripStart;
  /// The stretches without the service, in any order.
  std::vector<TripTunnel> tunnels = {};

  /// A trip through these points, of which there must be one at least, at an even speed in metres
  /// per second, above zero, with these tunnels; its positions are without noise. May be called
  /// from any thread.
  static Trip along(const std::vector<Coordinate>& way, double speed,
                    std::vector<TripTunnel> tunnels = {});

  /// Reads a GPX 1.1 file: the points of its tracks or, when it has none, of its routes. A point
  /// has a `time`, or else is reached at the `speed` (a child, or anywhere in its `extensions`) of
  /// its own or of an earlier point. Its accuracy is 5 m times its `hdop`. Elements of the
  /// namespace `urn:ovinta:trip` add what GPX has no words for; an unknown one is an error:
  ///
  ///     <extensions>                                    of the file or of its metadata
  ///       <trip:beacon uuid="..." major="1" minor="2" lat="..." lon="..."
  ///                    range="40" power="-59" noise="3"/>    the last three may be left out
  ///       <trip:permission after="120" status="2"/>     seconds; as the platform numbers it
  ///       <trip:battery after="300" state="charging"/>  unknown, unplugged, charging, full
  ///       <trip:tunnel from="120" to="180"/>            seconds; no service between them
  ///     <extensions>                                    of a point
  ///       <trip:accuracy>8</trip:accuracy>              metres, in place of the one from `hdop`
  ///
  /// A trip lasts a year at most, a file has 64 MiB at most.
  ///
  /// Gives the trip, or an English sentence that says what is wrong and in which line. May be
  /// called from any thread; blocks while it reads.
  static std::variant<Trip, std::string> fromGPX(const std::filesystem::path& file);
  /// The same for the text of such a file.
  static std::variant<Trip, std::string> fromGPXText(std::string_view text);
};

}  // namespace ovinta::platform::simulation
