#include <algorithm>

#include "platform/URLSession.h"

namespace ovinta::platform {
namespace {

// The C library's functions would ask the locale; field names are ASCII.
constexpr char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

bool sameFieldName(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, lowered, lowered);
}

}  // namespace

std::optional<std::string> HTTPResponse::header(std::string_view name) const {
  const auto found = std::ranges::find_if(
      headers, [&](const HeaderField& field) { return sameFieldName(field.name, name); });
  if (found == headers.end()) return std::nullopt;
  return found->value;
}

}  // namespace ovinta::platform
