#include "OvintaSDK/api/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace ovinta {

std::string numberText(double number) {
  constexpr double kSmallest = 1e-4;
  constexpr double kLargest = 9007199254740992.0;  // 2^53
  const double magnitude = std::fabs(number);
  const bool isPlain = magnitude == 0 || (magnitude >= kSmallest && magnitude < kLargest);
  std::array<char, 32> buffer{};
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                    isPlain ? std::chars_format::fixed : std::chars_format::scientific);
  std::string text(buffer.data(), end);
  if (isPlain && text.find('.') == std::string::npos) text += ".0";
  return text;
}

}  // namespace ovinta
