#pragma once

#include "OvintaSDK/api/CustomerOperation.h"

namespace ovinta {

/// Gets the customer of a token.
class GetCustomerOperation final : public CustomerOperation {
 public:
  GetCustomerOperation(std::string apiURL, std::string apiToken, Callback callback)
      : CustomerOperation(std::move(apiURL), std::move(callback)), apiToken_(std::move(apiToken)) {}

  std::string_view errorContext() const override { return "getting customer"; }

 private:
  Endpoint endpoint() const override { return {.path = APIPath::customer(), .token = apiToken_}; }

  std::string apiToken_;
};

}  // namespace ovinta
