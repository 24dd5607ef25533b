#pragma once

#include <string>

namespace ovinta {

/// What a customer logs in with.
struct LoginInfo {
  std::string emailAddress;
  std::string password;

  friend bool operator==(const LoginInfo&, const LoginInfo&) = default;
};

}  // namespace ovinta
