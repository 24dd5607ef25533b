#include "OvintaSDK/customer/StoredCustomer.h"

#include <utility>

#include "OvintaSDK/core/TextHelpers.h"
#include "OvintaSDK/core/UserDefaultsKey.h"

namespace ovinta {

CustomerPtr loadStoredCustomer(const platform::SettingsStore& settings) {
  Customer customer;
  for (const auto& path : CustomerInfo::defaultsKeyPaths()) {
    auto text = stringForKey(settings, path.key);
    if (path.key == UserDefaultsKey::customerPhone) {
      customer.info.phone = presence(std::move(text));
    } else if (text) {
      path.set(customer.info, *std::move(text));
    } else {
      return nullptr;
    }
  }
  auto token = stringForKey(settings, UserDefaultsKey::customerToken);
  if (!token) return nullptr;
  customer.token = *std::move(token);
  customer.emailAddress = presence(stringForKey(settings, UserDefaultsKey::customerEmail));
  return std::make_shared<const Customer>(std::move(customer));
}

void storeCustomer(const Customer& customer, platform::SettingsStore& settings) {
  platform::SettingsStore::Changes changes;
  const auto add = [&changes](UserDefaultsKey key, std::optional<std::string> text) {
    changes.emplace(key.rawValue(), std::move(text));
  };
  add(UserDefaultsKey::customerToken, customer.token);
  add(UserDefaultsKey::customerEmail, customer.emailAddress);
  for (const auto& path : CustomerInfo::defaultsKeyPaths()) {
    add(path.key, path.get(customer.info));
  }
  settings.apply(changes);
}

void forgetStoredToken(platform::SettingsStore& settings) {
  settings.wipe(UserDefaultsKey::customerToken.rawValue());
}

}  // namespace ovinta
