#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/OrderRequestWire.h"
#include "OvintaSDK/model/wire/OrderWire.h"

namespace ovinta {

/// Puts a push token on an order.
class UpdateOrderOperation final : public RecordOperation<OrderResponse> {
 public:
  UpdateOrderOperation(APIClient api, std::string customerToken, std::string redemptionCode,
                       std::string pushToken, Callback callback)
      : RecordOperation(std::move(api), std::move(callback)),
        customerToken_(std::move(customerToken)),
        redemptionCode_(std::move(redemptionCode)),
        orderInfo_{.pushToken = std::move(pushToken)} {}

  std::string_view errorContext() const override { return "updating order"; }

 private:
  Endpoint endpoint() const override {
    return {.path = APIPath::order(redemptionCode_), .method = "PUT", .token = customerToken_};
  }
  std::optional<std::string> body() const override { return encodeBody(orderInfo_); }

  std::string customerToken_;
  std::string redemptionCode_;
  const UpdateOrderInfo orderInfo_;
};

}  // namespace ovinta
