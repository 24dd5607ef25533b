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

/// The service refused a request. Its description is made of the answer's messages, else of the
/// status.
class OVINTA_EXPORT OvintaAPIError : public OvintaError {
 public:
  /// Whatever of the answer cannot be read leaves the matching property absent.
  OvintaAPIError(const std::optional<platform::HTTPResponse>& response,
                 const std::optional<std::string>& data, const ErrorSubject& subject);
  ~OvintaAPIError() override;

  /// Absent for a status that the service does not use.
  std::optional<HTTPStatusCode> statusCode() const { return statusCode_; }
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
