#include "platform/linux/http/HTTPRedirect.h"

#include <strings.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/linux/http/CurlHandles.h"

namespace ovinta::platform::linuxos {
namespace {

// The parts of a URL that make its origin. User names and passwords count as well, because a target
// must not choose the credentials to be sent.
constexpr std::array kOriginParts{CURLUPART_SCHEME, CURLUPART_HOST, CURLUPART_PORT, CURLUPART_USER,
                                  CURLUPART_PASSWORD};

using Origin = std::array<std::string, kOriginParts.size()>;

std::optional<Origin> originOf(const std::string& text) {
  const CurlURL url(curl_url());
  if (curl_url_set(url.get(), CURLUPART_URL, text.c_str(), CURLU_PATH_AS_IS) != CURLUE_OK) {
    return std::nullopt;
  }
  Origin origin;
  std::ranges::transform(kOriginParts, origin.begin(), [&](CURLUPart part) -> std::string {
    char* value = nullptr;
    if (curl_url_get(url.get(), part, &value, CURLU_DEFAULT_PORT) != CURLUE_OK) return {};
    return CurlString(value).get();
  });
  return origin;
}

bool sameOrigin(const Origin& a, const Origin& b) {
  return strcasecmp(a[1].c_str(), b[1].c_str()) == 0 && a[0] == b[0] &&
         std::equal(a.begin() + 2, a.end(), b.begin() + 2);
}

constexpr bool isRedirect(int statusCode) {
  return statusCode == 301 || statusCode == 302 || statusCode == 303 || statusCode == 307 ||
         statusCode == 308;
}

bool turnsIntoGet(const std::string& method, int statusCode) {
  if (statusCode == 303) return method != "GET" && method != "HEAD";
  return (statusCode == 301 || statusCode == 302) && method == "POST";
}

bool describesBody(const HeaderField& field) {
  return strncasecmp(field.name.c_str(), "Content-", 8) == 0;
}

}  // namespace

bool isWebURL(const std::string& text) {
  // What is wrong with the rest of these libcurl finds when it sends the request.
  for (const std::string_view start : {"https://", "http://"}) {
    if (text.starts_with(start)) return true;
  }
  const auto origin = originOf(text);
  return origin && (origin->front() == "http" || origin->front() == "https");
}

std::optional<URLRequest> redirected(const URLRequest& request, int statusCode,
                                     const std::string& target) {
  if (!isRedirect(statusCode)) return std::nullopt;
  const auto from = originOf(request.url.text);
  const auto to = originOf(target);
  if (!from || !to || !sameOrigin(*from, *to)) return std::nullopt;
  URLRequest next = request;
  next.url.text = target;
  if (turnsIntoGet(request.method, statusCode)) {
    next.method = "GET";
    next.body.reset();
    std::erase_if(next.headers, describesBody);
  }
  return next;
}

}  // namespace ovinta::platform::linuxos
