#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ovinta::platform {

/// The text of a URL that a `URLFormat` has accepted. A plain value.
struct URL {
  /// In the form of RFC 3986, so all of it ASCII.
  std::string text;

  friend bool operator==(const URL&, const URL&) = default;
};

/// Writes the text of the URL.
template <class Traits>
std::basic_ostream<char, Traits>& operator<<(std::basic_ostream<char, Traits>& stream,
                                             const URL& url) {
  return stream << url.text;
}

/// One name and value of a URL's query. A plain value.
struct URLQueryItem {
  /// UTF-8, not percent-encoded.
  std::string name;
  std::string value;

  friend bool operator==(const URLQueryItem&, const URLQueryItem&) = default;
};

/// Reads and builds URLs by RFC 3986. Stateless; may be used from any thread.
class URLFormat {
 public:
  virtual ~URLFormat() = default;

  /// The URL that the text stands for; absent when it is empty or breaks the grammar (blanks, bare
  /// non-ASCII characters), or names a port that is no number up to 65535.
  virtual std::optional<URL> parse(std::string_view text) const = 0;

  /// The URL with its query replaced by the items, in order; every character but the unreserved
  /// ones is percent-encoded. An empty list gives an empty query: a "?" with nothing after it.
  virtual URL withQueryItems(const URL& url, const std::vector<URLQueryItem>& items) const = 0;

  /// The URL with the component added to its path, the query kept. A "/" is put between when the
  /// path does not end with one and the component does not begin with one. Characters that a path
  /// cannot hold are percent-encoded; "/" stays.
  virtual URL appendingPathComponent(const URL& url, std::string_view component) const = 0;
};

}  // namespace ovinta::platform
