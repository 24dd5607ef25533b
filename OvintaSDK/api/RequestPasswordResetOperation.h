#pragma once

#include <variant>

#include "OvintaSDK/api/ResultOperation.h"
#include "OvintaSDK/model/wire/CustomerWire.h"

namespace ovinta {

/// Asks for a message with a token to reset the password. There is no result; the answer's body is
/// not read.
class RequestPasswordResetOperation final : public ResultOperation<std::monostate> {
 public:
  RequestPasswordResetOperation(APIClient api, std::string emailAddress, Callback callback)
      : ResultOperation(std::move(api), std::move(callback)),
        reset_{.email = std::move(emailAddress)} {}

  std::string_view errorContext() const override { return "request new password"; }

 private:
  Endpoint endpoint() const override {
    return {
        .path = APIPath::requestPassword(), .method = "POST", .success = HTTPStatusCode::accepted};
  }
  std::optional<std::string> body() const override { return encodeBody(reset_); }
  void succeed(std::string /*data*/) override { report({}); }

  const RequestPasswordReset reset_;
};

}  // namespace ovinta
