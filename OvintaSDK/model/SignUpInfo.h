#pragma once

#include <string>

namespace ovinta {

/// Turns an anonymous account into one with e-mail address and password. The service checks all
/// three, which are always sent; never log the passwords. A plain value.
struct SignUpInfo {
  /// The address to log in with.
  std::string emailAddress;
  /// The password, and the same once more.
  std::string password;
  std::string passwordConfirmation;

  friend bool operator==(const SignUpInfo&, const SignUpInfo&) = default;
};

}  // namespace ovinta
