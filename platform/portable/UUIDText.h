#pragma once

#include <cstddef>

#include "platform/UUID.h"

namespace ovinta::platform::portable {

/// The length of an identifier's text form.
inline constexpr std::size_t kUUIDLength = 36;

/// Writes the text form, upper case, where there is room for it; gives its end.
char* writeUUID(const UUID& uuid, char* out);

}  // namespace ovinta::platform::portable
