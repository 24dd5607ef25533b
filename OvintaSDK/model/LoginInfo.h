#pragma once

#include <string>

namespace ovinta {

/// What a customer logs in with.
struct LoginInfo {
  std::string emailAddress;
  std::string password;
};

}  // namespace ovinta
