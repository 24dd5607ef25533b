#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/wire/OrderRequestWire.h"
#include "OvintaSDK/model/wire/OrderWire.h"

namespace ovinta {

/// Creates an order for a customer.
class CreateOrderOperation final : public RecordOperation<OrderResponse> {
 public:
  CreateOrderOperation(APIClient api, CustomerPtr customer, CreateOrderInfo orderInfo,
                       Callback callback)
      : RecordOperation(std::move(api), std::move(callback)),
        customer_(std::move(customer)),
        orderInfo_(std::move(orderInfo)) {}

  std::string_view errorContext() const override { return "creating order"; }

 private:
  Endpoint endpoint() const override {
    return {.path = APIPath::orders(), .method = "POST", .token = customer_->token};
  }
  std::optional<std::string> body() const override { return encodeBody(orderInfo_); }

  CustomerPtr customer_;
  const CreateOrderInfo orderInfo_;
};

}  // namespace ovinta
