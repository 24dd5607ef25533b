#pragma once

#include <optional>
#include <string>

namespace ovinta {

/// Sets the push token of an order.
struct UpdateOrderInfo {
  std::optional<std::string> pushToken = {};
};

}  // namespace ovinta
