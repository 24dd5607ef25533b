#include "OvintaSDK/model/ClaimOrderInfo.h"
#include "OvintaSDK/model/CreateOrderInfo.h"

namespace ovinta {
namespace {

template <class Request>
void copyCustomer(const CustomerInfo& from, Request& to) {
  to.customerCarColor = from.carColor;
  to.customerCarType = from.carType;
  to.customerLicensePlate = from.licensePlate;
  to.customerName = from.name;
  to.customerPhone = from.phone;
}

}  // namespace

CreateOrderInfo CreateOrderInfo::withCustomerInfo(std::int64_t siteID,
                                                  std::string partnerIdentifier,
                                                  const CustomerInfo& customerInfo,
                                                  std::optional<std::string> pushToken,
                                                  std::optional<OrderState> state,
                                                  std::optional<PickupWindow> pickupWindow) {
  CreateOrderInfo info;
  info.siteID = siteID;
  info.partnerIdentifier = std::move(partnerIdentifier);
  copyCustomer(customerInfo, info);
  info.pushToken = std::move(pushToken);
  info.state = state;
  info.pickupWindow = pickupWindow;
  return info;
}

ClaimOrderInfo ClaimOrderInfo::withCustomerInfo(const CustomerInfo& customerInfo,
                                                RequiredText pushToken,
                                                std::optional<std::string> pickupType) {
  ClaimOrderInfo info{.pushToken = std::move(pushToken), .pickupType = std::move(pickupType)};
  copyCustomer(customerInfo, info);
  return info;
}

}  // namespace ovinta
