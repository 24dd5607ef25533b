#pragma once

#include <memory>
#include <optional>
#include <string>

#include "../../platform/Export.h"
#include "OvintaSDK/api/ErrorContext.h"

namespace ovinta {

/// The root of all errors that reach the application, and the type of those that no derived class
/// tells apart. Immutable; may be used from any thread.
///
/// "The errors of a request", for every call to the service: `OvintaErrorInvalidURL`; an
/// `OvintaError` with the `localizedDescription` of a `platform::TransportError`, when no complete
/// answer came; `OvintaAPIError`; `OvintaErrorInvalidResponse`. Their titles name the action.
class OVINTA_EXPORT OvintaError {
 public:
  /// An error with that description; without one it is "Unknown Error".
  explicit OvintaError(std::optional<std::string> message = {}, const ErrorSubject& subject = {});
  virtual ~OvintaError();

  /// What happened, in words for people; "Unknown Error" when nothing is known.
  const std::string& errorDescription() const { return errorDescription_; }
  /// The same text, under the name that platform errors have it.
  const std::string& localizedDescription() const { return errorDescription_; }
  /// A short English heading for an alert: "Error", and what it is about.
  const std::string& title() const { return title_; }

 private:
  std::string errorDescription_;
  std::string title_;
};

/// How errors are handed out; null: no error.
using ErrorPtr = std::shared_ptr<const OvintaError>;

/// A request was not sent, because the stored base URL is no URL (see `UserDefaultsKey::apiBase`).
class OVINTA_EXPORT OvintaErrorInvalidURL : public OvintaError {
 public:
  /// The description is "invalid URL".
  explicit OvintaErrorInvalidURL(const ErrorSubject& subject);
  ~OvintaErrorInvalidURL() override;
};

/// The service answered with success, but with a body that is not what the endpoint's answer is.
class OVINTA_EXPORT OvintaErrorInvalidResponse : public OvintaError {
 public:
  /// The description is "invalid response".
  explicit OvintaErrorInvalidResponse(const ErrorSubject& subject);
  ~OvintaErrorInvalidResponse() override;
};

}  // namespace ovinta
