#pragma once

#include <string_view>

namespace ovinta::platform::portable {

/// Whether the bytes are well-formed UTF-8. May be called from any thread, also by the last that
/// write while a process ends: the check of the JSON library goes by static objects, which are gone
/// by then.
bool isUTF8(std::string_view bytes);

}  // namespace ovinta::platform::portable
