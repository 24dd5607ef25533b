#pragma once

#include "OvintaSDK/model/ClaimOrderInfo.h"
#include "OvintaSDK/model/CreateOrderInfo.h"
#include "OvintaSDK/model/RequiredTextAccess.h"
#include "OvintaSDK/model/UpdateOrderInfo.h"
#include "OvintaSDK/model/wire/RecordCoding.h"

namespace ovinta::wire {

/// The fields of the customer's details, which two requests share.
template <class Request>
constexpr auto customerFields() {
  return table(field("customer_car_color", &Request::customerCarColor),
               field("customer_car_type", &Request::customerCarType),
               field("customer_license_plate", &Request::customerLicensePlate),
               field("customer_name", &Request::customerName),
               field("customer_phone", &Request::customerPhone));
}

template <>
struct WireTable<CreateOrderInfo> {
  static constexpr auto kFields =
      table(field("site_id", &CreateOrderInfo::siteID),
            field("partner_identifier", &CreateOrderInfo::partnerIdentifier),
            customerFields<CreateOrderInfo>(), field("push_token", &CreateOrderInfo::pushToken),
            field("state", &CreateOrderInfo::state),
            field("pickup_window", &CreateOrderInfo::pickupWindow));
};

template <>
struct WireTable<ClaimOrderInfo> {
  static constexpr auto kFields =
      table(customerFields<ClaimOrderInfo>(),
            nullableField("push_token", &ClaimOrderInfo::pushToken, RequiredTextAccess::kText),
            field("pickup_type", &ClaimOrderInfo::pickupType));

  static ClaimOrderInfo blank() { return {.pushToken = RequiredTextAccess::of(std::nullopt)}; }
};

template <>
struct WireTable<UpdateOrderInfo> {
  static constexpr auto kFields =
      table(field("push_token", &UpdateOrderInfo::pushToken, RequiredTextAccess::kText));

  static UpdateOrderInfo blank() { return {.pushToken = RequiredTextAccess::of(std::nullopt)}; }
};

}  // namespace ovinta::wire
