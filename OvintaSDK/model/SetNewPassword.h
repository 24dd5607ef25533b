#pragma once

#include <string>

namespace ovinta {

/// Sets a new password with the token of a reset message. The service checks all three, which are
/// always sent; never log them. A plain value.
struct SetNewPassword {
  /// The token of the message that `CustomerManager::requestNewPassword` asked for.
  std::string resetPasswordToken;
  /// The new password, and the same once more as the customer repeated it.
  std::string password;
  std::string confirmation;

  friend bool operator==(const SetNewPassword&, const SetNewPassword&) = default;
};

}  // namespace ovinta
