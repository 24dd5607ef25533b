#pragma once

#include "OvintaSDK/api/CustomerOperation.h"

namespace ovinta {

/// Logs a customer in by e-mail address and password.
class LoginOperation final : public CustomerOperation {
 public:
  LoginOperation(std::string apiURL, std::string emailAddress, std::string password,
                 Callback callback)
      : CustomerOperation(std::move(apiURL), std::move(callback)),
        loginInfo_{.emailAddress = std::move(emailAddress), .password = std::move(password)} {}

  std::string_view errorContext() const override { return "signing in"; }

 private:
  Endpoint endpoint() const override { return {.path = APIPath::signIn(), .method = "POST"}; }
  std::optional<std::string> body() const override { return encodeBody(loginInfo_); }

  const LoginInfo loginInfo_;
};

}  // namespace ovinta
