#pragma once

#include <optional>
#include <string>

namespace ovinta {

/// The customer's name, vehicle and phone.
struct CustomerInfo {
  std::string name;
  std::optional<std::string> carType = {};
  std::optional<std::string> carColor = {};
  std::optional<std::string> licensePlate = {};
  std::optional<std::string> phone = {};

  friend bool operator==(const CustomerInfo&, const CustomerInfo&) = default;
};

}  // namespace ovinta
