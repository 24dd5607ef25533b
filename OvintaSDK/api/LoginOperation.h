#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/CustomerWire.h"

namespace ovinta {

/// Logs a customer in by e-mail address and password.
class LoginOperation final : public RecordOperation<wire::CustomerResponse> {
 public:
  LoginOperation(APIClient api, std::string emailAddress, std::string password, Callback callback)
      : RecordOperation(std::move(api), std::move(callback)),
        loginInfo_{.emailAddress = std::move(emailAddress), .password = std::move(password)} {}

  std::string_view errorContext() const override { return "signing in"; }

 private:
  Endpoint endpoint() const override { return {.path = APIPath::signIn(), .method = "POST"}; }
  std::optional<std::string> body() const override { return encodeBody(loginInfo_); }

  const LoginInfo loginInfo_;
};

}  // namespace ovinta
