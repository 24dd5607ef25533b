#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "OvintaSDK/api/APIPath.h"
#include "OvintaSDK/core/Context.h"
#include "platform/URLSession.h"

namespace ovinta {

/// The service at one base URL, reached with the means of a context. May be used from any thread.
class APIClient {
 public:
  APIClient(ContextPtr context, std::string baseURL)
      : context_(std::move(context)), baseURL_(std::move(baseURL)) {}

  /// The service at the base URL that the settings hold; absent when they hold none.
  static std::optional<APIClient> of(const ContextPtr& context) {
    auto baseURL = context->setting(UserDefaultsKey::apiBase);
    return baseURL ? std::optional(APIClient(context, *std::move(baseURL))) : std::nullopt;
  }

  Context& context() const { return *context_; }

  /// Has an `Operation` run on the API queue, made from this client and the inputs.
  template <class Operation, class... Inputs>
  void send(Inputs&&... inputs) const {
    context_->apiQueue().addOperation(
        std::make_shared<Operation>(*this, std::forward<Inputs>(inputs)...));
  }

  /// The request, without method and body, for a path of the service: its URL, its headers, a
  /// time-out of 10 seconds and no use of caches. `token` is the customer's. A present list of
  /// query items, even an empty one, becomes the URL's query. Absent when the base URL is no URL.
  std::optional<platform::URLRequest> makeRequest(
      const std::optional<APIPath>& path, std::optional<std::string_view> token,
      const std::optional<std::vector<platform::URLQueryItem>>& queryItems) const;

 private:
  std::vector<platform::HeaderField> headers(std::optional<std::string_view> token) const;

  ContextPtr context_;
  std::string baseURL_;
};

}  // namespace ovinta
