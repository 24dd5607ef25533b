#include "OvintaSDK/customer/StoredCustomer.h"

#include <array>
#include <utility>

#include "OvintaSDK/core/TextHelpers.h"
#include "OvintaSDK/core/UserDefaultsKey.h"

namespace ovinta {
namespace {

using OptionalText = std::optional<std::string>;

/// A settings key and the field of `CustomerInfo` kept under it.
struct DefaultsKeyPath {
  UserDefaultsKey key;
  OptionalText CustomerInfo::*field;
  /// Without it no customer is loaded; otherwise an empty text counts as absent.
  bool isRequired;
};

const std::array<DefaultsKeyPath, 4>& defaultsKeyPaths() {
  static const std::array<DefaultsKeyPath, 4> kPaths{{
      {UserDefaultsKey::customerVehicleType, &CustomerInfo::carType, true},
      {UserDefaultsKey::customerVehicleColor, &CustomerInfo::carColor, true},
      {UserDefaultsKey::customerLicensePlate, &CustomerInfo::licensePlate, true},
      {UserDefaultsKey::customerPhone, &CustomerInfo::phone, false},
  }};
  return kPaths;
}

}  // namespace

std::shared_ptr<const Customer> loadStoredCustomer() {
  auto name = UserDefaultsKey::customerName.stringValue();
  if (!name) return nullptr;
  Customer customer;
  customer.info.name = *std::move(name);
  for (const DefaultsKeyPath& path : defaultsKeyPaths()) {
    if (!path.isRequired) continue;
    customer.info.*path.field = path.key.stringValue();
    if (!(customer.info.*path.field)) return nullptr;
  }
  auto token = UserDefaultsKey::customerToken.stringValue();
  if (!token) return nullptr;
  customer.token = *std::move(token);
  customer.emailAddress = presence(UserDefaultsKey::customerEmail.stringValue());
  for (const DefaultsKeyPath& path : defaultsKeyPaths()) {
    if (!path.isRequired) customer.info.*path.field = presence(path.key.stringValue());
  }
  return std::make_shared<const Customer>(std::move(customer));
}

void storeCustomer(const Customer& customer) {
  UserDefaultsKey::customerToken.set(customer.token);
  UserDefaultsKey::customerEmail.set(customer.emailAddress);
  UserDefaultsKey::customerName.set(customer.info.name);
  for (const DefaultsKeyPath& path : defaultsKeyPaths()) {
    path.key.set(customer.info.*path.field);
  }
}

void forgetStoredToken() { UserDefaultsKey::customerToken.remove(); }

}  // namespace ovinta
