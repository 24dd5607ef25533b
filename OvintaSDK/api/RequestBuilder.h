#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OvintaSDK/api/APIPath.h"
#include "platform/URLSession.h"

namespace ovinta {

/// The request, without method and body, for a path of the service: its URL, its headers, a
/// time-out of 10 seconds and no use of caches. `token` is the customer's. A present list of query
/// items, even an empty one, becomes the URL's query. Absent when the base URL is none. May be
/// called from any thread.
std::optional<platform::URLRequest> makeRequest(
    std::string_view baseURL, const std::optional<APIPath>& path,
    const std::optional<std::string>& token,
    const std::optional<std::vector<platform::URLQueryItem>>& queryItems);

}  // namespace ovinta
