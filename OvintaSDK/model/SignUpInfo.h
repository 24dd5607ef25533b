#pragma once

#include <string>

namespace ovinta {

/// Turns an anonymous account into one with e-mail address and password.
struct SignUpInfo {
  std::string emailAddress;
  std::string password;
  std::string passwordConfirmation;

  friend bool operator==(const SignUpInfo&, const SignUpInfo&) = default;
};

}  // namespace ovinta
