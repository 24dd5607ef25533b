#include "OvintaSDK/api/APIClient.h"

#include <chrono>
#include <utility>

namespace ovinta {

using namespace std::chrono_literals;

std::optional<platform::URLRequest> APIClient::makeRequest(
    const std::optional<APIPath>& path, std::optional<std::string_view> token,
    const std::optional<std::vector<platform::URLQueryItem>>& queryItems) const {
  const auto base = context_->url(baseURL_);
  if (!base) return std::nullopt;
  const platform::URLFormat& urls = *context_->services().urls;
  std::optional<platform::URLRequest> request(std::in_place);
  if (queryItems) request->url = urls.withQueryItems(*base, *queryItems);
  const platform::URL& url = queryItems ? request->url : *base;
  request->url = path ? urls.appendingPathComponent(url, path->text()) : url;
  request->cachePolicy = platform::CachePolicy::reloadIgnoringLocalAndRemoteCacheData;
  request->timeout = 10s;
  request->headers = headers(token);
  return request;
}

std::vector<platform::HeaderField> APIClient::headers(std::optional<std::string_view> token) const {
  std::vector<platform::HeaderField> fields;
  fields.reserve(7);
  // The texts are made in their places instead of being moved there.
  const auto add = [&fields](std::string_view name, std::string_view value) -> std::string& {
    platform::HeaderField& field = fields.emplace_back();
    field.name = name;
    field.value = value;
    return field.value;
  };
  if (token) {
    std::string& value = add("Authorization", {});
    value.reserve(token->size() + 14);
    value.append("Token token=\"").append(*token).append("\"");
  }
  if (auto appToken = context_->appToken.get()) add("App-Token", {}) = *std::move(appToken);
  add("SDK-Version", context_->sdkVersion());
  add("App-Version", context_->appVersion());
  add("SDK-Platform", "ios");
  add("Content-Type", "application/json");
  add("Accept", "application/json");
  return fields;
}

}  // namespace ovinta
