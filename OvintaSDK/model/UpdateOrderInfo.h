#pragma once

#include <optional>
#include <string>

namespace ovinta {

/// Sets the push token of an order.
struct UpdateOrderInfo {
  std::optional<std::string> pushToken = {};

  friend bool operator==(const UpdateOrderInfo&, const UpdateOrderInfo&) = default;
};

}  // namespace ovinta
