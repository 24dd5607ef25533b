#pragma once

#include "cli/client/Output.h"
#include "cli/demo/DemoOptions.h"
#include "platform/simulation/trip/Trip.h"

namespace ovinta::cli {

/// Makes the trip twice, without and with delivery, each in a process of its own, and prints side
/// by side what the service learned, and when. A trip without tunnels gets one: a parking garage at
/// its end. Success where with delivery the service has learned of everything. Throws
/// `std::runtime_error` where a trip fails. Call it before the process has threads.
ExitCode runTunnelDemo(const DemoOptions& options, platform::simulation::Trip trip);

}  // namespace ovinta::cli
