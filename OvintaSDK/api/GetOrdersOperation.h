#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/wire/OrderWire.h"

namespace ovinta {

/// Gets all orders of a customer.
class GetOrdersOperation final : public DecodingOperation<std::optional<OrderList>> {
 public:
  GetOrdersOperation(APIClient api, CustomerPtr customer, Callback callback)
      : DecodingOperation(std::move(api), std::move(callback)), customer_(std::move(customer)) {}

  std::string_view errorContext() const override { return "getting orders"; }

 private:
  Endpoint endpoint() const override {
    return {.path = APIPath::orders(), .token = customer_->token};
  }
  std::optional<OrderList> decode(const platform::JSONValue& answer) const override {
    return wire::decode<OrdersResponse>(answer, dates()).data;
  }
  std::string_view decodingFailureLogLine() const override {
    return "Unexpected error Getting Orders: ";
  }

  CustomerPtr customer_;
};

}  // namespace ovinta
