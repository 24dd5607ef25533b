#pragma once

#include <array>
#include <optional>
#include <string>
#include <variant>

#include "../../platform/Export.h"
#include "OvintaSDK/core/UserDefaultsKey.h"

namespace ovinta {

/// The customer's name, vehicle and phone, in words for the people at the site. No value is
/// checked. A plain value.
struct CustomerInfo {
  struct DefaultsKeyPath;

  /// Always sent, even when it is empty; the others are sent when present.
  std::string name;
  std::optional<std::string> carType = {};
  std::optional<std::string> carColor = {};
  std::optional<std::string> licensePlate = {};
  std::optional<std::string> phone = {};

  /// Under which key of the settings store each field is kept, in the order of the fields. Valid
  /// for ever; may be called from any thread.
  OVINTA_EXPORT static const std::array<DefaultsKeyPath, 5>& defaultsKeyPaths();

  friend bool operator==(const CustomerInfo&, const CustomerInfo&) = default;
};

/// A settings key and the field that is kept under it. A constant; may be used from any thread.
struct OVINTA_EXPORT CustomerInfo::DefaultsKeyPath {
  /// The key, and the field as a pointer to the member of `CustomerInfo`.
  UserDefaultsKey key;
  std::variant<std::string CustomerInfo::*, std::optional<std::string> CustomerInfo::*> field;

  /// The field's text; absent when the field is.
  std::optional<std::string> get(const CustomerInfo& info) const;
  /// Puts the text into the field.
  void set(CustomerInfo& info, std::string text) const;
};

}  // namespace ovinta
