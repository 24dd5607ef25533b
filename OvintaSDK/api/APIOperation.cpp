#include "OvintaSDK/api/APIOperation.h"

#include <cstdio>

#include "OvintaSDK/api/OvintaAPIError.h"
#include "platform/JSON.h"

namespace ovinta {

void APIOperation::main() {
  const Endpoint endpoint = this->endpoint();
  auto request = api_.makeRequest(endpoint.path, endpoint.token, endpoint.queryItems);
  if (!request) {
    if (hasCallback()) fail(std::make_shared<OvintaErrorInvalidURL>(*this));
    return;
  }
  request->method = endpoint.method;
  try {
    request->body = body();
  } catch (const platform::CodingError& error) {
    // The request goes out without a body; whoever debugs the application sees why.
    std::printf("%s\n", error.what());
  }
  context().services().urlSession->startDataTask(
      *std::move(request), [self = shared_from_this(), success = endpoint.success](
                               auto data, const auto& response, const auto& error) {
        if (self->hasCallback()) self->complete(success, std::move(data), response, error);
      });
}

void APIOperation::complete(HTTPStatusCode success, std::optional<std::string> data,
                            const std::optional<platform::HTTPResponse>& response,
                            const std::optional<platform::TransportError>& error) {
  if (!response || error) {
    fail(std::make_shared<OvintaError>(
        error ? std::optional(error->localizedDescription) : std::nullopt, *this));
  } else if (response->statusCode != static_cast<int>(success)) {
    refuse(response, data);
  } else if (data) {
    succeed(*std::move(data));
  }
}

void APIOperation::refuse(const std::optional<platform::HTTPResponse>& response,
                          const std::optional<std::string>& data) {
  fail(std::make_shared<OvintaAPIError>(response, data, *this));
}

}  // namespace ovinta
