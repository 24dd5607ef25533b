#pragma once

#include <memory>
#include <optional>
#include <string>

#include "OvintaSDK/model/CustomerInfo.h"

namespace ovinta {

/// The account as the service returns it.
struct Customer {
  /// Authorises requests in the customer's name. Never show or log it.
  std::string token;
  std::optional<std::string> emailAddress = {};
  CustomerInfo info;

  /// Whether the account has an e-mail address; an anonymous one has none.
  bool registered() const { return emailAddress && !emailAddress->empty(); }

  friend bool operator==(const Customer&, const Customer&) = default;
};

using CustomerPtr = std::shared_ptr<const Customer>;

}  // namespace ovinta
