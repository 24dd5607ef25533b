#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "CodingError.h"
#include "Export.h"
#include "Value.h"

namespace ovinta::platform {

/// The value of a whole JSON text (RFC 8259, UTF-8), such as the payload of a push; absent when it
/// is not JSON. May be called from any thread; nothing is thrown.
OVINTA_EXPORT std::optional<Value> parseJSON(std::string_view text);

/// The text of a value, without blanks, dictionaries in the order of their keys. The error, of kind
/// `invalidValue`, tells of a text that is not UTF-8 or a number that is not finite. May be called
/// from any thread; nothing is thrown.
OVINTA_EXPORT Coded<std::string> jsonText(const Value& value);

}  // namespace ovinta::platform
