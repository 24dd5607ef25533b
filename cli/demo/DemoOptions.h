#pragma once

#include "cli/client/ClientOptions.h"
#include "cli/device/TripOptions.h"

namespace ovinta::cli {

struct DemoOptions {
  TripOptions trip = {};
  /// Without a base URL the service is a sandbox in this process; the data directory is not used.
  ClientOptions service = {};
};

}  // namespace ovinta::cli
