#include "OvintaSDK/api/OvintaAPIError.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "platform/Services.h"

namespace ovinta {
namespace {

/// The header field with the link, under its own name and under the one that HTTP/2 makes of it. In
/// any other spelling it is another field.
constexpr std::array<std::string_view, 2> kUpgradeFields{"App-Upgrade-URL", "app-upgrade-url"};

std::optional<platform::URL> upgradeURL(const platform::HTTPResponse& response) {
  for (const std::string_view name : kUpgradeFields) {
    const auto field = std::ranges::find(response.headers, name, &platform::HeaderField::name);
    if (field != response.headers.end()) return platform::services().urls->parse(field->value);
  }
  return std::nullopt;
}

}  // namespace

/// What an error is made of, read out of the answer.
struct OvintaAPIError::Answer {
  std::optional<HTTPStatusCode> status;
  std::optional<ErrorBody> body;
  std::optional<platform::URL> upgradeURL;

  Answer(const std::optional<platform::HTTPResponse>& response,
         const std::optional<std::string>& data) {
    if (data) body = ErrorBody::parse(*data);
    if (!response) return;
    status = httpStatusCode(response->statusCode);
    upgradeURL = ovinta::upgradeURL(*response);
  }

  std::optional<std::string> message() const {
    if (body) return body->message();
    return status ? defaultMessage(*status) : std::nullopt;
  }
};

OvintaAPIError::OvintaAPIError(const std::optional<platform::HTTPResponse>& response,
                               const std::optional<std::string>& data, const ErrorSubject& subject)
    : OvintaAPIError(Answer(response, data), subject) {}

OvintaAPIError::OvintaAPIError(Answer answer, const ErrorSubject& subject)
    : OvintaError(answer.message(), subject),
      statusCode_(answer.status),
      body_(std::move(answer.body)),
      appUpgradeURL_(std::move(answer.upgradeURL)) {}

OvintaAPIError::~OvintaAPIError() = default;

std::optional<std::map<std::string, std::vector<std::string>>> OvintaAPIError::errors() const {
  return body_ ? std::optional(body_->errors) : std::nullopt;
}

}  // namespace ovinta
