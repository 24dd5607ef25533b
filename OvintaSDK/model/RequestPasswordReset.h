#pragma once

#include <string>

namespace ovinta {

/// Asks for a message with a token to reset the password. A plain value.
struct RequestPasswordReset {
  /// The address of the account, to which the message goes; not checked.
  std::string email;

  friend bool operator==(const RequestPasswordReset&, const RequestPasswordReset&) = default;
};

}  // namespace ovinta
