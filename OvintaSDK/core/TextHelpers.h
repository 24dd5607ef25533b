#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "../../platform/Export.h"

namespace ovinta {

/// The text with a blank put before every upper-case letter but one at its very start; nothing else
/// changes: "URLError" gives "U R L Error". `text` is UTF-8; bytes that are not pass through. May
/// be called from any thread, as `presence`.
OVINTA_EXPORT std::string wordsFromCamelCase(std::string_view text);

/// The text, or absent when it is absent or empty.
OVINTA_EXPORT std::optional<std::string> presence(std::optional<std::string> text);

}  // namespace ovinta
