#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/CustomerWire.h"

namespace ovinta {

/// Gets the customer of a token.
class GetCustomerOperation final : public RecordOperation<wire::CustomerResponse> {
 public:
  GetCustomerOperation(APIClient api, std::string apiToken, Callback callback)
      : RecordOperation(std::move(api), std::move(callback)), apiToken_(std::move(apiToken)) {}

  std::string_view errorContext() const override { return "getting customer"; }

 private:
  Endpoint endpoint() const override { return {.path = APIPath::customer(), .token = apiToken_}; }

  std::string apiToken_;
};

}  // namespace ovinta
