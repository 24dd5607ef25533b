#pragma once

#include "OvintaSDK/model/CustomerConsent.h"
#include "OvintaSDK/model/CustomerInfo.h"

namespace ovinta {

/// What a customer is created from; one flat object on the wire.
struct CreateCustomerInfo {
  CustomerInfo customerInfo;
  CustomerConsent customerConsent;
};

}  // namespace ovinta
