#pragma once

#include "OvintaSDK/model/CustomerInfo.h"

namespace ovinta {

/// The customer that a request to create or claim an order describes: vehicle fields are empty
/// where the request has none, the phone stays absent.
template <class Request>
CustomerInfo customerInfoOf(const Request& request) {
  return {.name = request.customerName.value_or(""),
          .carType = request.customerCarType.value_or(""),
          .carColor = request.customerCarColor.value_or(""),
          .licensePlate = request.customerLicensePlate.value_or(""),
          .phone = request.customerPhone};
}

}  // namespace ovinta
