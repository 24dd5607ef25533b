#pragma once

#include "OvintaSDK/api/CustomerOperation.h"

namespace ovinta {

/// Changes a customer's details.
class UpdateCustomerOperation final : public CustomerOperation {
 public:
  UpdateCustomerOperation(std::string apiURL, CustomerPtr customer, CustomerInfo customerInfo,
                          Callback callback)
      : CustomerOperation(std::move(apiURL), std::move(callback)),
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
