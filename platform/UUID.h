#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Export.h"

namespace ovinta::platform {

/// A universally unique identifier (RFC 4122). A plain value; the functions may be called from any
/// thread.
struct OVINTA_EXPORT UUID {
  /// In the order of the text form.
  std::array<std::uint8_t, 16> bytes{};

  /// The identifier that the text stands for: exactly hexadecimal digits, either case, in groups of
  /// 8-4-4-4-12; absent for anything else.
  static std::optional<UUID> parse(std::string_view text);

  /// The text form, upper case.
  std::string text() const;

  friend auto operator<=>(const UUID&, const UUID&) = default;
};

}  // namespace ovinta::platform
