#pragma once

#include <optional>
#include <string>

#include "../../platform/Export.h"

namespace ovinta {

/// The statuses that the service uses.
enum class HTTPStatusCode {
  ok = 200,
  accepted = 202,
  noContent = 204,
  unauthorized = 401,
  notFound = 404,
  gone = 410,
  unprocessableEntity = 422,
  /// The service's own choice; not the usual status for a required upgrade.
  appUpgradeRequired = 425
};

/// The status with that number; absent when the service does not use it.
OVINTA_EXPORT std::optional<HTTPStatusCode> httpStatusCode(int number);

/// The message for an answer of that status without a readable body; absent when there is none.
OVINTA_EXPORT std::optional<std::string> defaultMessage(HTTPStatusCode status);

}  // namespace ovinta
