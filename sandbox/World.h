#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "platform/Value.h"
#include "sandbox/SeededGenerator.h"
#include "sandbox/Sites.h"

namespace ovinta::sandbox {

/// All that the service knows; a plain value. Customers and orders are kept in the form that
/// snapshots have: with the password and the reset token, with the owner and the device, and
/// without what an order tells of its site.
struct World {
  SeededGenerator generator;
  Sites sites = {};
  /// In the order in which they came.
  std::vector<platform::Dictionary> customers = {};
  std::map<std::int64_t, platform::Dictionary> orders = {};
};

}  // namespace ovinta::sandbox
