#include "OvintaSDK/core/UserDefaultsKey.h"

#include <algorithm>

#include "platform/Services.h"

namespace ovinta {

constexpr UserDefaultsKey UserDefaultsKey::customerToken{"Customer Token"};
constexpr UserDefaultsKey UserDefaultsKey::customerName{"Customer Name"};
constexpr UserDefaultsKey UserDefaultsKey::customerEmail{"Customer Email"};
constexpr UserDefaultsKey UserDefaultsKey::customerVehicleType{"Customer Vehicle Type"};
constexpr UserDefaultsKey UserDefaultsKey::customerVehicleColor{"Customer Vehicle Color"};
constexpr UserDefaultsKey UserDefaultsKey::customerLicensePlate{"Customer License Plate"};
constexpr UserDefaultsKey UserDefaultsKey::customerPhone{"Customer Phone"};
constexpr UserDefaultsKey UserDefaultsKey::apiBase{"API Base URL"};
constexpr UserDefaultsKey UserDefaultsKey::lastKnownAuthStatus{"Last Known Auth Status"};

const std::array<UserDefaultsKey, 9>& UserDefaultsKey::all() {
  static constexpr std::array<UserDefaultsKey, 9> kAll{
      customerToken,        customerName,  customerEmail, customerVehicleType, customerVehicleColor,
      customerLicensePlate, customerPhone, apiBase,       lastKnownAuthStatus};
  return kAll;
}

std::optional<UserDefaultsKey> UserDefaultsKey::fromRawValue(std::string_view rawValue) {
  const auto found = std::ranges::find(all(), rawValue, &UserDefaultsKey::rawValue);
  return found == all().end() ? std::nullopt : std::optional(*found);
}

std::optional<std::string> UserDefaultsKey::stringValue() const {
  return stringForKey(*platform::services().settings, *this);
}

bool UserDefaultsKey::boolValue() const { return stringValue() == "YES"; }

void UserDefaultsKey::set(const std::optional<std::string>& value) const {
  if (value) {
    platform::services().settings->set(rawValue_, *value);
  } else {
    remove();
  }
}

void UserDefaultsKey::setBool(bool value) const { set(value ? "YES" : "NO"); }

void UserDefaultsKey::remove() const { platform::services().settings->remove(rawValue_); }

std::optional<std::string> stringForKey(const platform::SettingsStore& store, UserDefaultsKey key) {
  return store.string(key.rawValue());
}

}  // namespace ovinta
