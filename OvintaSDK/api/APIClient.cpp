#include "OvintaSDK/api/APIClient.h"

#include <chrono>

namespace ovinta {

using namespace std::chrono_literals;

std::optional<platform::URLRequest> APIClient::makeRequest(
    const std::optional<APIPath>& path, const std::optional<std::string>& token,
    const std::optional<std::vector<platform::URLQueryItem>>& queryItems) const {
  auto url = context_->url(baseURL_);
  if (!url) return std::nullopt;
  const platform::URLFormat& urls = *context_->services().urls;
  if (queryItems) url = urls.withQueryItems(*url, *queryItems);
  if (path) url = urls.appendingPathComponent(*url, path->text());

  platform::URLRequest request;
  request.url = *std::move(url);
  request.cachePolicy = platform::CachePolicy::reloadIgnoringLocalAndRemoteCacheData;
  request.timeout = 10s;
  request.headers = headers(token);
  return request;
}

std::vector<platform::HeaderField> APIClient::headers(
    const std::optional<std::string>& token) const {
  std::vector<platform::HeaderField> fields;
  fields.reserve(7);
  if (token) fields.push_back({"Authorization", "Token token=\"" + *token + "\""});
  if (auto appToken = context_->appToken.get()) {
    fields.push_back({"App-Token", *std::move(appToken)});
  }
  fields.push_back({"SDK-Version", context_->sdkVersion()});
  fields.push_back({"App-Version", context_->appVersion()});
  fields.push_back({"SDK-Platform", "ios"});
  fields.push_back({"Content-Type", "application/json"});
  fields.push_back({"Accept", "application/json"});
  return fields;
}

}  // namespace ovinta
