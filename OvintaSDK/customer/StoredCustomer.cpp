#include "OvintaSDK/customer/StoredCustomer.h"

#include <utility>

#include "OvintaSDK/core/TextHelpers.h"
#include "OvintaSDK/core/UserDefaultsKey.h"

namespace ovinta {
CustomerPtr loadStoredCustomer() {
  Customer customer;
  for (const auto& path : CustomerInfo::defaultsKeyPaths()) {
    auto text = path.key.stringValue();
    if (path.key == UserDefaultsKey::customerPhone) {
      customer.info.phone = presence(std::move(text));
    } else if (text) {
      path.set(customer.info, *std::move(text));
    } else {
      return nullptr;
    }
  }
  auto token = UserDefaultsKey::customerToken.stringValue();
  if (!token) return nullptr;
  customer.token = *std::move(token);
  customer.emailAddress = presence(UserDefaultsKey::customerEmail.stringValue());
  return std::make_shared<const Customer>(std::move(customer));
}

void storeCustomer(const Customer& customer) {
  UserDefaultsKey::customerToken.set(customer.token);
  UserDefaultsKey::customerEmail.set(customer.emailAddress);
  for (const auto& path : CustomerInfo::defaultsKeyPaths()) path.key.set(path.get(customer.info));
}

void forgetStoredToken() { UserDefaultsKey::customerToken.remove(); }

}  // namespace ovinta
