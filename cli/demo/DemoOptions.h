#pragma once

#include "cli/client/ClientOptions.h"
#include "cli/device/TripOptions.h"

namespace ovinta::cli {

/// What goes on the trip.
enum class DemoDeviceKind {
  /// A simulated device, in virtual time.
  simulated,
  /// This machine, in real time, with the position by the real GeoClue.
  linux
};

struct DemoOptions {
  DemoDeviceKind device = DemoDeviceKind::simulated;
  /// Whether the trip is made twice, without and with delivery, through a tunnel.
  bool isThroughTunnel = false;
  TripOptions trip = {};
  /// Without a base URL the service is a sandbox in this process. A demonstration sets the data
  /// directory itself.
  ClientOptions service = {};
};

}  // namespace ovinta::cli
