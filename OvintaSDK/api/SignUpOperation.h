#pragma once

#include "OvintaSDK/api/CustomerOperation.h"

namespace ovinta {

/// Gives an anonymous account an e-mail address and a password.
class SignUpOperation final : public CustomerOperation {
 public:
  SignUpOperation(std::string apiURL, CustomerPtr customer, SignUpInfo signUpInfo,
                  Callback callback)
      : CustomerOperation(std::move(apiURL), std::move(callback)),
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
