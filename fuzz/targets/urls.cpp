#include <arpa/inet.h>
#include <strings.h>

#include <array>
#include <boost/url/parse.hpp>

#include "fuzz/Target.h"
#include "platform/linux/http/HTTPRedirect.h"
#include "platform/linux/text/BoostURLFormat.h"

namespace ovinta::fuzz {
namespace {

using namespace platform;

/// As another reader sees it: scheme, host and port; none where nobody is named.
std::optional<std::string> originOf(const std::string& text) {
  const auto url = boost::urls::parse_uri(text);
  if (url.has_error() || url->host().empty()) return std::nullopt;
  std::string port(url->port().data(), url->port().size());
  port.erase(0, port.find_first_not_of('0'));
  if (port.empty()) port = url->scheme_id() == boost::urls::scheme::https ? "443" : "80";
  std::string host = url->host();
  // Addresses can be written in many ways.
  if (in_addr address{}; inet_aton(host.c_str(), &address) != 0) host = inet_ntoa(address);
  if (host.starts_with('[')) {
    std::array<char, INET6_ADDRSTRLEN> canonical{};
    in6_addr address{};
    if (inet_pton(AF_INET6, host.substr(1, host.size() - 2).c_str(), &address) == 1) {
      host = inet_ntop(AF_INET6, &address, canonical.data(), canonical.size());
    }
  }
  return std::string(url->scheme().data(), url->scheme().size()) + "://" + host + ":" + port;
}

void build(const URL& url, std::string_view name, std::string_view value) {
  const linuxos::BoostURLFormat format;
  // Where nobody is named, a path may become a host.
  if (const auto origin = originOf(url.text)) {
    const auto longer = format.appendingPathComponent(url, value);
    require(format.parse(longer.text) == longer, "a URL with one more component is one");
    require(originOf(longer.text) == origin, "a component changes the path alone");
  }

  const std::vector<URLQueryItem> items{{std::string(name), std::string(value)},
                                        {std::string(value), ""}};
  const auto asking = format.withQueryItems(url, items);
  require(format.parse(asking.text) == asking, "a URL with a query is one");
  const auto parsed = boost::urls::parse_uri_reference(asking.text);
  auto item = items.begin();
  for (const auto param : parsed->params({false, false, true})) {
    require(item != items.end() && param.key == item->name && param.value == item->value,
            "a query's items are those that it was given");
    ++item;
  }
  require(item == items.end(), "a query has all its items");
}

void redirect(const URL& from, std::string_view to) {
  const URLRequest request{.url = from, .method = "POST", .headers = {{"Authorization", "secret"}}};
  for (const int status : {200, 301, 303, 308}) {
    const auto next = linuxos::redirected(request, status, std::string(to));
    if (!next) continue;
    require(linuxos::isWebURL(next->url.text) || !linuxos::isWebURL(from.text),
            "a redirect stays on the web");
    const auto before = originOf(from.text);
    const auto after = originOf(next->url.text);
    require(!before || !after || strcasecmp(before->c_str(), after->c_str()) == 0,
            "secrets stay within their origin");
  }
}

/// A URL; where it redirects to, which is also a name; a value.
void run(std::string_view input) {
  const auto text = takeLine(input);
  const auto target = takeLine(input);
  const auto url = linuxos::BoostURLFormat().parse(text);
  if (!url) return;
  require(url->text == text, "a URL keeps its text");
  build(*url, target, input);
  redirect(*url, target);
}

const Target kTarget("urls", run);

}  // namespace
}  // namespace ovinta::fuzz
