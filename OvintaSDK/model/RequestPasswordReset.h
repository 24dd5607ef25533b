#pragma once

#include <string>

namespace ovinta {

/// Asks for a message with a token to reset the password.
struct RequestPasswordReset {
  std::string email;

  friend bool operator==(const RequestPasswordReset&, const RequestPasswordReset&) = default;
};

}  // namespace ovinta
