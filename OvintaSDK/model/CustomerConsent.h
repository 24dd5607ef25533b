#pragma once

namespace ovinta {

/// What an anonymous customer agrees to when the account is created. The service judges the values.
/// A plain value.
struct CustomerConsent {
  /// Agreement to the terms of service, and to being of the age that they ask for.
  bool termsOfService = false;
  bool ageVerification = false;

  friend bool operator==(const CustomerConsent&, const CustomerConsent&) = default;
};

}  // namespace ovinta
