#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sandbox/http/Answer.h"

namespace ovinta::sandbox {

/// What ends a line of a request.
inline constexpr std::string_view kLineEnd = "\r\n";

/// A request's first line and header fields.
struct RequestHead {
  std::string method = {};
  /// Path and query, as received.
  std::string target = {};
  std::string version = {};
  /// Names and values as received, in that order.
  std::vector<std::pair<std::string, std::string>> fields = {};

  /// The values of the fields of that name, in upper or lower case.
  std::vector<std::string_view> values(std::string_view name) const;
};

/// Reads a head, its lines without the empty one that ends it, or answers what is wrong with it.
platform::Expected<RequestHead, Answer> readRequestHead(std::string_view text);

/// Whether the path is on the merchant's and tester's side.
bool isTesters(std::string_view path);

/// The answer to a head whose path cannot be served; absent for all others.
[[nodiscard]] std::optional<Answer> refusePath(const RequestHead& head);

/// Whether the texts differ in nothing but the case of ASCII letters.
bool isSameIgnoringCase(std::string_view one, std::string_view other);

/// The answer to a request that is not understood.
Answer notHTTP();

/// The answer to a head that is too long.
Answer headTooLong();

}  // namespace ovinta::sandbox
