#pragma once

#include <memory>
#include <optional>
#include <string>

#include "../../platform/Export.h"
#include "OvintaSDK/api/ErrorContext.h"

namespace ovinta {

/// The root of all errors that reach the application. Immutable; may be used from any thread.
class OVINTA_EXPORT OvintaError {
 public:
  explicit OvintaError(std::optional<std::string> message = {}, const ErrorSubject& subject = {});
  virtual ~OvintaError();

  /// What happened, in words for people; "Unknown Error" when nothing is known.
  const std::string& errorDescription() const { return errorDescription_; }
  /// The same text, under the name that platform errors have it.
  const std::string& localizedDescription() const { return errorDescription_; }
  /// A short heading for an alert.
  const std::string& title() const { return title_; }

 private:
  std::string errorDescription_;
  std::string title_;
};

/// Null: no error.
using ErrorPtr = std::shared_ptr<const OvintaError>;

/// The request's URL could not be formed.
class OVINTA_EXPORT OvintaErrorInvalidURL : public OvintaError {
 public:
  explicit OvintaErrorInvalidURL(const ErrorSubject& subject);
  ~OvintaErrorInvalidURL() override;
};

/// A success answer could not be read.
class OVINTA_EXPORT OvintaErrorInvalidResponse : public OvintaError {
 public:
  explicit OvintaErrorInvalidResponse(const ErrorSubject& subject);
  ~OvintaErrorInvalidResponse() override;
};

}  // namespace ovinta
