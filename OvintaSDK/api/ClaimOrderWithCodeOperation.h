#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/wire/OrderRequestWire.h"
#include "OvintaSDK/model/wire/OrderWire.h"

namespace ovinta {

/// Makes the order of a redemption code a customer's own.
class ClaimOrderWithCodeOperation final : public RecordOperation<OrderResponse> {
 public:
  ClaimOrderWithCodeOperation(APIClient api, CustomerPtr customer, std::string redemptionCode,
                              ClaimOrderInfo orderInfo, Callback callback)
      : RecordOperation(std::move(api), std::move(callback)),
        customer_(std::move(customer)),
        redemptionCode_(std::move(redemptionCode)),
        orderInfo_(std::move(orderInfo)) {}

  std::string_view errorContext() const override { return "claiming order"; }

 private:
  Endpoint endpoint() const override {
    return {.path = APIPath::order(redemptionCode_), .method = "PUT", .token = customer_->token};
  }
  std::optional<std::string> body() const override { return encodeBody(orderInfo_); }

  CustomerPtr customer_;
  std::string redemptionCode_;
  const ClaimOrderInfo orderInfo_;
};

}  // namespace ovinta
