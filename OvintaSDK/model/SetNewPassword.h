#pragma once

#include <string>

namespace ovinta {

/// Sets a new password with the token of a reset message.
struct SetNewPassword {
  std::string resetPasswordToken;
  std::string password;
  std::string confirmation;

  friend bool operator==(const SetNewPassword&, const SetNewPassword&) = default;
};

}  // namespace ovinta
