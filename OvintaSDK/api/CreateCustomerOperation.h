#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/CustomerWire.h"

namespace ovinta {

/// Creates an anonymous customer.
class CreateCustomerOperation final : public RecordOperation<wire::CustomerResponse> {
 public:
  CreateCustomerOperation(APIClient api, CreateCustomerInfo info, Callback callback)
      : RecordOperation(std::move(api), std::move(callback)), info_(std::move(info)) {}

  std::string_view errorContext() const override { return "creating profile"; }

 private:
  Endpoint endpoint() const override { return {.path = APIPath::customer(), .method = "POST"}; }
  std::optional<std::string> body() const override { return encodeBody(info_); }

  const CreateCustomerInfo info_;
};

}  // namespace ovinta
