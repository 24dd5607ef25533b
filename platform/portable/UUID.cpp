#include "platform/UUID.h"

#include <array>

#include "platform/portable/UUIDText.h"

namespace ovinta::platform {

namespace {

using portable::kUUIDLength;

/// The place of each byte's two digits in the text.
constexpr std::array<std::uint8_t, 16> kPlaces{0,  2,  4,  6,  9,  11, 14, 16,
                                               19, 21, 24, 26, 28, 30, 32, 34};
constexpr std::array<std::uint8_t, 4> kDashes{8, 13, 18, 23};

constexpr std::uint8_t kNoDigit = 0xFF;

/// The value of each character as a hexadecimal digit.
constexpr std::array<std::uint8_t, 256> kDigitValues = [] {
  std::array<std::uint8_t, 256> table{};
  table.fill(kNoDigit);
  for (std::uint8_t value = 0; value < 16; ++value) {
    table[static_cast<unsigned char>("0123456789ABCDEF"[value])] = value;
    table[static_cast<unsigned char>("0123456789abcdef"[value])] = value;
  }
  return table;
}();

}  // namespace

std::optional<UUID> UUID::parse(std::string_view text) {
  if (text.size() != kUUIDLength) return std::nullopt;
  for (const std::size_t dash : kDashes) {
    if (text[dash] != '-') return std::nullopt;
  }
  const auto digitAt = [text](std::size_t place) {
    return kDigitValues[static_cast<unsigned char>(text[place])];
  };
  UUID uuid;
  std::uint8_t seen = 0;
  for (std::size_t i = 0; i < kPlaces.size(); ++i) {
    const std::uint8_t high = digitAt(kPlaces[i]);
    const std::uint8_t low = digitAt(kPlaces[i] + 1);
    // Of the values only that of no digit has one of the upper bits.
    seen |= high | low;
    uuid.bytes[i] = static_cast<std::uint8_t>(high << 4 | low);
  }
  return seen < 16 ? std::optional(uuid) : std::nullopt;
}

char* portable::writeUUID(const UUID& uuid, char* out) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  for (std::size_t i = 0; i < kPlaces.size(); ++i) {
    out[kPlaces[i]] = kDigits[uuid.bytes[i] >> 4];
    out[kPlaces[i] + 1] = kDigits[uuid.bytes[i] & 0xf];
  }
  for (const std::size_t dash : kDashes) out[dash] = '-';
  return out + kUUIDLength;
}

std::string UUID::text() const {
  std::string text(kUUIDLength, '\0');
  portable::writeUUID(*this, text.data());
  return text;
}

}  // namespace ovinta::platform
