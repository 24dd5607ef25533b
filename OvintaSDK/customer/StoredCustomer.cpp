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
  OptionalText (*get)(const CustomerInfo&);
  void (*set)(CustomerInfo&, const std::string&);
  /// Without it no customer is loaded.
  bool isRequired;
};

template <auto kField>
DefaultsKeyPath path(UserDefaultsKey key, bool isRequired) {
  return {key, [](const CustomerInfo& info) { return OptionalText(info.*kField); },
          [](CustomerInfo& info, const std::string& text) { info.*kField = text; }, isRequired};
}

const std::array<DefaultsKeyPath, 5>& defaultsKeyPaths() {
  static const std::array<DefaultsKeyPath, 5> kPaths{
      path<&CustomerInfo::name>(UserDefaultsKey::customerName, true),
      path<&CustomerInfo::carType>(UserDefaultsKey::customerVehicleType, true),
      path<&CustomerInfo::carColor>(UserDefaultsKey::customerVehicleColor, true),
      path<&CustomerInfo::licensePlate>(UserDefaultsKey::customerLicensePlate, true),
      path<&CustomerInfo::phone>(UserDefaultsKey::customerPhone, false)};
  return kPaths;
}

}  // namespace

CustomerPtr loadStoredCustomer() {
  Customer customer;
  for (const DefaultsKeyPath& path : defaultsKeyPaths()) {
    if (!path.isRequired) continue;
    auto text = path.key.stringValue();
    if (!text) return nullptr;
    path.set(customer.info, *text);
  }
  auto token = UserDefaultsKey::customerToken.stringValue();
  if (!token) return nullptr;
  customer.token = *std::move(token);
  customer.emailAddress = presence(UserDefaultsKey::customerEmail.stringValue());
  customer.info.phone = presence(UserDefaultsKey::customerPhone.stringValue());
  return std::make_shared<const Customer>(std::move(customer));
}

void storeCustomer(const Customer& customer) {
  UserDefaultsKey::customerToken.set(customer.token);
  UserDefaultsKey::customerEmail.set(customer.emailAddress);
  for (const DefaultsKeyPath& path : defaultsKeyPaths()) path.key.set(path.get(customer.info));
}

void forgetStoredToken() { UserDefaultsKey::customerToken.remove(); }

}  // namespace ovinta
