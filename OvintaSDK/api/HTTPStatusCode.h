#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "../../platform/EnumNames.h"
#include "../../platform/Export.h"

namespace ovinta {

/// The statuses that the service uses, with their numbers in HTTP (RFC 9110). Has a `name`.
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

template <>
struct OVINTA_EXPORT platform::EnumNames<HTTPStatusCode> {
  /// The name of the status, e.g. "not found"; empty for one that the service does not use.
  static std::string_view of(HTTPStatusCode status);
};

}  // namespace ovinta
