#include "OvintaSDK/api/RequestBuilder.h"

#include <chrono>

#include "OvintaSDK/core/OvintaState.h"
#include "platform/Services.h"

namespace ovinta {
namespace {

using namespace std::chrono_literals;

std::vector<platform::HeaderField> headers(const std::optional<std::string>& token) {
  OvintaState& state = OvintaState::current();
  std::vector<platform::HeaderField> fields;
  if (token) fields.push_back({"Authorization", "Token token=\"" + *token + "\""});
  if (auto appToken = state.appToken.get()) fields.push_back({"App-Token", *std::move(appToken)});
  fields.push_back({"SDK-Version", state.sdkVersion()});
  fields.push_back({"App-Version", state.appVersion()});
  fields.push_back({"SDK-Platform", "ios"});
  fields.push_back({"Content-Type", "application/json"});
  fields.push_back({"Accept", "application/json"});
  return fields;
}

}  // namespace

std::optional<platform::URLRequest> makeRequest(
    std::string_view baseURL, const std::optional<APIPath>& path,
    const std::optional<std::string>& token,
    const std::optional<std::vector<platform::URLQueryItem>>& queryItems) {
  const platform::URLFormat& urls = *platform::services().urls;
  auto url = urls.parse(baseURL);
  if (!url) return std::nullopt;
  if (queryItems) url = urls.withQueryItems(*url, *queryItems);
  if (path) url = urls.appendingPathComponent(*url, path->text());

  platform::URLRequest request;
  request.url = *std::move(url);
  request.cachePolicy = platform::CachePolicy::reloadIgnoringLocalAndRemoteCacheData;
  request.timeout = 10s;
  request.headers = headers(token);
  return request;
}

}  // namespace ovinta
