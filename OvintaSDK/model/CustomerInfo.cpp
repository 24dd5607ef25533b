#include "OvintaSDK/model/CustomerInfo.h"

#include <utility>

namespace ovinta {

std::optional<std::string> CustomerInfo::DefaultsKeyPath::get(const CustomerInfo& info) const {
  return std::visit([&info](auto member) -> std::optional<std::string> { return info.*member; },
                    field);
}

void CustomerInfo::DefaultsKeyPath::set(CustomerInfo& info, std::string text) const {
  std::visit([&](auto member) { info.*member = std::move(text); }, field);
}

const std::array<CustomerInfo::DefaultsKeyPath, 5>& CustomerInfo::defaultsKeyPaths() {
  static const std::array<DefaultsKeyPath, 5> kPaths{
      {{UserDefaultsKey::customerName, &CustomerInfo::name},
       {UserDefaultsKey::customerVehicleType, &CustomerInfo::carType},
       {UserDefaultsKey::customerVehicleColor, &CustomerInfo::carColor},
       {UserDefaultsKey::customerLicensePlate, &CustomerInfo::licensePlate},
       {UserDefaultsKey::customerPhone, &CustomerInfo::phone}}};
  return kPaths;
}

}  // namespace ovinta
