#pragma once

#include <array>
#include <optional>
#include <string>
#include <variant>

#include "../../platform/Export.h"
#include "OvintaSDK/core/UserDefaultsKey.h"

namespace ovinta {

/// The customer's name, vehicle and phone.
struct CustomerInfo {
  struct DefaultsKeyPath;

  std::string name;
  std::optional<std::string> carType = {};
  std::optional<std::string> carColor = {};
  std::optional<std::string> licensePlate = {};
  std::optional<std::string> phone = {};

  /// Under which key of the settings store each field is kept. May be called from any thread.
  OVINTA_EXPORT static const std::array<DefaultsKeyPath, 5>& defaultsKeyPaths();

  friend bool operator==(const CustomerInfo&, const CustomerInfo&) = default;
};

/// A settings key and the field that is kept under it.
struct OVINTA_EXPORT CustomerInfo::DefaultsKeyPath {
  UserDefaultsKey key;
  std::variant<std::string CustomerInfo::*, std::optional<std::string> CustomerInfo::*> field;

  /// The field's text; absent when the field is.
  std::optional<std::string> get(const CustomerInfo& info) const;
  void set(CustomerInfo& info, std::string text) const;
};

}  // namespace ovinta
