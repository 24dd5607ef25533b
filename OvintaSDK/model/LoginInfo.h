#pragma once

#include <string>

namespace ovinta {

/// What a customer logs in with; the service checks it. A plain value.
struct LoginInfo {
  /// Both always sent. Never log the password.
  std::string emailAddress;
  std::string password;

  friend bool operator==(const LoginInfo&, const LoginInfo&) = default;
};

}  // namespace ovinta
