#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/CustomerWire.h"

namespace ovinta {

/// Gives an anonymous account an e-mail address and a password.
class SignUpOperation final : public RecordOperation<wire::CustomerResponse> {
 public:
  SignUpOperation(APIClient api, CustomerPtr customer, SignUpInfo signUpInfo, Callback callback)
      : RecordOperation(std::move(api), std::move(callback)),
        customer_(std::move(customer)),
        signUpInfo_(std::move(signUpInfo)) {}

  std::string_view errorContext() const override { return "signing up"; }

 private:
  Endpoint endpoint() const override {
    return {.path = APIPath::signUp(), .method = "PATCH", .token = customer_->token};
  }
  std::optional<std::string> body() const override { return encodeBody(signUpInfo_); }

  CustomerPtr customer_;
  const SignUpInfo signUpInfo_;
};

}  // namespace ovinta
