#pragma once

#include <optional>
#include <string>

#include "../../platform/Export.h"

namespace ovinta {

/// The statuses that the service uses, with their numbers in HTTP (RFC 9110).
enum class HTTPStatusCode {
  ok = 200,
  accepted = 202,
  noContent = 204,
  unauthorized = 401,
  notFound = 404,
  gone = 410,
  unprocessableEntity = 422,
  /// The application must be upgraded. The number is the service's own choice: HTTP's is 426.
  appUpgradeRequired = 425
};

/// The status with that number; absent when the service does not use it. May be called from any
/// thread.
OVINTA_EXPORT std::optional<HTTPStatusCode> httpStatusCode(int number);

/// The English message for an answer of that status without a readable body: "Not authorized", "Not
/// found", "Error processing input" and "Please update to the latest version of the app", for
/// `unauthorized`, `notFound`, `unprocessableEntity` and `appUpgradeRequired`; absent for the
/// others. May be called from any thread.
OVINTA_EXPORT std::optional<std::string> defaultMessage(HTTPStatusCode status);

}  // namespace ovinta
