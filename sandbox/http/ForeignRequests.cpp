#include "sandbox/http/ForeignRequests.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>

#include "sandbox/http/Answer.h"

namespace ovinta::sandbox {
namespace {

/// Whether the text is empty or a colon with a number.
bool isPortOrNone(std::string_view text) {
  return text.empty() || (text.size() <= 6 && text.front() == ':' &&
                          std::ranges::all_of(text.substr(1), [](unsigned char byte) {
                            return std::isdigit(byte) != 0;
                          }));
}

/// Whether the host, with or without a port, names this machine. The port does not count: whoever
/// forwards another one to the service still means the service.
bool namesThisMachine(std::string_view host) {
  const std::size_t bracket = host.find(']');
  const std::size_t end =
      bracket == std::string_view::npos ? std::min(host.find(':'), host.size()) : bracket + 1;
  return isPortOrNone(host.substr(end)) && isLoopbackName(std::string(host.substr(0, end)));
}

}  // namespace

bool isLoopbackName(const std::string& name) {
  in_addr address{};
  const bool isAddress = ::inet_pton(AF_INET, name.c_str(), &address) == 1;
  return isAddress ? ntohl(address.s_addr) >> 24U == 127
                   : isSameIgnoringCase(name, "localhost") || isSameIgnoringCase(name, "[::1]");
}

std::optional<Answer> refuseForeign(const RequestHead& head, bool isPublic) {
  const auto hosts = head.values("Host");
  const bool isNamed = isPublic || hosts.empty() || namesThisMachine(hosts.front());
  if (hosts.size() > 1 || !isNamed) {
    return errorAnswer(403, "host", "must name this machine, as 127.0.0.1 and localhost do");
  }
  const std::string own = "http://" + std::string(hosts.empty() ? "" : hosts.front());
  const auto isOwn = [&](std::string_view origin) { return isSameIgnoringCase(origin, own); };
  // Browsers name no origin with the request for an image, but whose page it is on.
  const auto isFromHere = [](std::string_view site) {
    return isSameIgnoringCase(site, "same-origin") || isSameIgnoringCase(site, "none");
  };
  if (!std::ranges::all_of(head.values("Origin"), isOwn) ||
      !std::ranges::all_of(head.values("Sec-Fetch-Site"), isFromHere)) {
    return errorAnswer(403, "origin", "must be the sandbox's own: other pages may not use it");
  }
  return std::nullopt;
}

}  // namespace ovinta::sandbox
