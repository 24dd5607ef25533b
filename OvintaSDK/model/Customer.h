#pragma once

#include <memory>
#include <optional>
#include <string>

#include "OvintaSDK/model/CustomerInfo.h"

namespace ovinta {

/// The account as the service returns it. A plain value.
struct Customer {
  /// Authorises requests in the customer's name. Never show or log it.
  std::string token;
  /// The address that the account logs in with; absent or empty for an anonymous one.
  std::optional<std::string> emailAddress = {};
  /// Name, vehicle and phone.
  CustomerInfo info;

  /// Whether the account has an e-mail address; an anonymous one has none.
  bool registered() const { return emailAddress && !emailAddress->empty(); }

  friend bool operator==(const Customer&, const Customer&) = default;
};

/// How customers are handed out; nobody changes them, so that any thread may read one.
using CustomerPtr = std::shared_ptr<const Customer>;

}  // namespace ovinta
