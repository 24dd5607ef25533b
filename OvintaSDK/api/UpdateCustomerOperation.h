#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/CustomerWire.h"

namespace ovinta {

/// Changes a customer's details.
class UpdateCustomerOperation final : public RecordOperation<wire::CustomerResponse> {
 public:
  UpdateCustomerOperation(APIClient api, CustomerPtr customer, CustomerInfo customerInfo,
                          Callback callback)
      : RecordOperation(std::move(api), std::move(callback)),
        customer_(std::move(customer)),
        customerInfo_(std::move(customerInfo)) {}

  std::string_view errorContext() const override { return "updating profile"; }

 private:
  Endpoint endpoint() const override {
    return {.path = APIPath::customer(), .method = "PATCH", .token = customer_->token};
  }
  std::optional<std::string> body() const override { return encodeBody(customerInfo_); }

  CustomerPtr customer_;
  const CustomerInfo customerInfo_;
};

}  // namespace ovinta
