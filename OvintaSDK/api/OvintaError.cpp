#include "OvintaSDK/api/OvintaError.h"

#include <utility>

namespace ovinta {

OvintaError::OvintaError(std::optional<std::string> message, const ErrorSubject& subject)
    : errorDescription_(std::move(message).value_or("Unknown Error")), title_(subject.title()) {}

OvintaError::~OvintaError() = default;

OvintaErrorInvalidURL::OvintaErrorInvalidURL(const ErrorSubject& subject)
    : OvintaError("invalid URL", subject) {}

OvintaErrorInvalidURL::~OvintaErrorInvalidURL() = default;

OvintaErrorInvalidResponse::OvintaErrorInvalidResponse(const ErrorSubject& subject)
    : OvintaError("invalid response", subject) {}

OvintaErrorInvalidResponse::~OvintaErrorInvalidResponse() = default;

}  // namespace ovinta
