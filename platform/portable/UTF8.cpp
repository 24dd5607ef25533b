#include "platform/portable/UTF8.h"

#include <cstddef>

namespace ovinta::platform {

namespace {

/// The length of the character that the bytes begin with, which is not ASCII; 0 when it is
/// malformed (RFC 3629, section 4).
std::size_t lengthOfCharacter(std::string_view bytes) {
  const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(bytes[index]); };
  const unsigned char lead = byte(0);
  const std::size_t length = lead < 0xC2   ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length == 0 || bytes.size() < length) return 0;
  // Overlong forms, surrogates and what lies beyond U+10FFFF show in the second byte.
  const unsigned char lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned char highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (byte(1) < lowest || byte(1) > highest) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  return length;
}

}  // namespace

bool portable::isUTF8(std::string_view bytes) {
  while (!bytes.empty()) {
    const bool isASCII = (bytes.front() & 0x80) == 0;
    const std::size_t length = isASCII ? 1 : lengthOfCharacter(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

}  // namespace ovinta::platform
