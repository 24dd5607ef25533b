#pragma once

#include "OvintaSDK/api/CustomerOperation.h"

namespace ovinta {

/// Creates an anonymous customer.
class CreateCustomerOperation final : public CustomerOperation {
 public:
  CreateCustomerOperation(std::string apiURL, CreateCustomerInfo info, Callback callback)
      : CustomerOperation(std::move(apiURL), std::move(callback)), info_(std::move(info)) {}

  std::string_view errorContext() const override { return "creating profile"; }

 private:
  Endpoint endpoint() const override { return {.path = APIPath::customer(), .method = "POST"}; }
  std::optional<std::string> body() const override { return encodeBody(info_); }

  const CreateCustomerInfo info_;
};

}  // namespace ovinta
