#pragma once

namespace ovinta {

/// What an anonymous customer agrees to when the account is created. The service judges the values.
struct CustomerConsent {
  bool termsOfService = false;
  bool ageVerification = false;

  friend bool operator==(const CustomerConsent&, const CustomerConsent&) = default;
};

}  // namespace ovinta
