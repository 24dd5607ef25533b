#pragma once

#include <string>

namespace ovinta {

/// Asks for a message with a token to reset the password.
struct RequestPasswordReset {
  std::string email;
};

}  // namespace ovinta
