#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/CustomerWire.h"

namespace ovinta {

/// Sets a new password with the token of a reset message, which also logs the customer in.
class SetNewPasswordOperation final : public RecordOperation<wire::CustomerResponse> {
 public:
  SetNewPasswordOperation(APIClient api, SetNewPassword newPassword, Callback callback)
      : RecordOperation(std::move(api), std::move(callback)),
        newPassword_(std::move(newPassword)) {}

  std::string_view errorContext() const override { return "signing in"; }

 private:
  Endpoint endpoint() const override { return {.path = APIPath::setPassword(), .method = "PATCH"}; }
  std::optional<std::string> body() const override { return encodeBody(newPassword_); }

  const SetNewPassword newPassword_;
};

}  // namespace ovinta
