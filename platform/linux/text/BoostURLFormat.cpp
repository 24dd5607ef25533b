#include "platform/linux/text/BoostURLFormat.h"

#include <algorithm>
#include <boost/url/encode.hpp>
#include <boost/url/parse.hpp>
#include <boost/url/rfc/pchars.hpp>
#include <boost/url/rfc/unreserved_chars.hpp>
#include <charconv>

namespace ovinta::platform::linuxos {

namespace {

bool isPort(std::string_view text) {
  if (text.empty()) return true;
  std::uint16_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end;
}

template <class Characters>
std::string encoded(std::string_view text, const Characters& unencoded) {
  if (std::ranges::all_of(text, unencoded)) return std::string(text);
  return boost::urls::encode({text.data(), text.size()}, unencoded);
}

/// The end of the path of an accepted URL: no part before it can hold one of these characters.
std::size_t endOfPath(std::string_view url) {
  return std::min({url.find('?'), url.find('#'), url.size()});
}

/// The path of an accepted URL; the slashes before a host, which may be empty, are no part of it.
std::string_view pathOf(std::string_view url) {
  std::string_view rest = url.substr(0, endOfPath(url));
  // A colon that comes before all slashes ends the scheme: the grammar has no other one there.
  const std::size_t mark = rest.find_first_of(":/");
  if (mark < rest.size() && rest[mark] == ':') rest.remove_prefix(mark + 1);
  if (!rest.starts_with("//")) return rest;
  rest.remove_prefix(2);
  return rest.substr(std::min(rest.find('/'), rest.size()));
}

}  // namespace

std::optional<URL> BoostURLFormat::parse(std::string_view text) const {
  if (text.empty()) return std::nullopt;
  const auto view = boost::urls::parse_uri_reference({text.data(), text.size()});
  if (view.has_error()) return std::nullopt;
  if (view->has_port() && !isPort({view->port().data(), view->port().size()})) return std::nullopt;
  // The parser ends a host or port at the first wrong character and takes the rest for the path.
  const auto path = view->encoded_path();
  if (view->has_authority() && !path.empty() && path.front() != '/') return std::nullopt;
  return URL{std::string(text)};
}

URL BoostURLFormat::withQueryItems(const URL& url, const std::vector<URLQueryItem>& items) const {
  std::string text = url.text.substr(0, endOfPath(url.text));
  char separator = '?';
  for (const auto& [name, value] : items) {
    text += separator;
    text += encoded(name, boost::urls::unreserved_chars);
    text += '=';
    text += encoded(value, boost::urls::unreserved_chars);
    separator = '&';
  }
  if (items.empty()) text += separator;
  text += std::string_view(url.text).substr(std::min(url.text.find('#'), url.text.size()));
  return URL{std::move(text)};
}

URL BoostURLFormat::appendingPathComponent(const URL& url, std::string_view component) const {
  static constexpr auto kUnencoded = boost::urls::pchars + '/';
  const std::string addition = encoded(component, kUnencoded);
  const std::size_t end = endOfPath(url.text);
  const bool needsSlash = !pathOf(url.text).ends_with('/') && !component.starts_with('/');
  std::string text;
  text.reserve(url.text.size() + addition.size() + 1);
  text.append(url.text, 0, end);
  if (needsSlash) text += '/';
  text += addition;
  text.append(url.text, end);
  return URL{std::move(text)};
}

}  // namespace ovinta::platform::linuxos
