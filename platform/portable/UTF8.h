#pragma once

#include <string_view>

namespace ovinta::platform::portable {

/// Whether the bytes are well-formed UTF-8. May be called from any thread.
bool isUTF8(std::string_view bytes);

}  // namespace ovinta::platform::portable
