#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "../../platform/Export.h"
#include "../../platform/URLSession.h"
#include "OvintaSDK/api/ErrorBody.h"
#include "OvintaSDK/api/HTTPStatusCode.h"
#include "OvintaSDK/api/OvintaError.h"

namespace ovinta {

/// The service answered a request with another status than the one for success. The description is
/// `ErrorBody::message` of the answer's body, else `defaultMessage` of the status, else "Unknown
/// Error". Immutable; may be used from any thread.
class OVINTA_EXPORT OvintaAPIError : public OvintaError {
 public:
  /// The error for an answer, `data` being its body. Whatever of the answer cannot be read leaves
  /// the matching property absent.
  OvintaAPIError(const std::optional<platform::HTTPResponse>& response,
                 const std::optional<std::string>& data, const ErrorSubject& subject);
  ~OvintaAPIError() override;

  /// Absent for a status that the service does not use.
  std::optional<HTTPStatusCode> statusCode() const { return statusCode_; }
  /// Absent when the answer's body is none that `ErrorBody::parse` can read.
  const std::optional<ErrorBody>& body() const { return body_; }
  /// Messages by the name of the field that they are about; absent without a readable body.
  std::optional<std::map<std::string, std::vector<std::string>>> errors() const;
  /// Where the application can be upgraded, if the answer says so in a header field whose name is
  /// exactly "App-Upgrade-URL" or, as HTTP/2 writes it, "app-upgrade-url"; of both the former
  /// counts.
  const std::optional<platform::URL>& appUpgradeURL() const { return appUpgradeURL_; }

 private:
  struct Answer;
  OvintaAPIError(Answer answer, const ErrorSubject& subject);

  std::optional<HTTPStatusCode> statusCode_;
  std::optional<ErrorBody> body_;
  std::optional<platform::URL> appUpgradeURL_;
};

}  // namespace ovinta
