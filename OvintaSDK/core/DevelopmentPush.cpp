#include "OvintaSDK/core/DevelopmentPush.h"

#include <algorithm>

namespace ovinta {
namespace {

/// Drops everything before `mark` from the text; false, and nothing is dropped, when it does not
/// occur.
bool skipTo(std::string_view& text, std::string_view mark) {
  const std::size_t position = text.find(mark);
  if (position == std::string_view::npos) return false;
  text.remove_prefix(position);
  return true;
}

}  // namespace

bool isDevelopmentPushEnvironment(const platform::Bundle& application) {
  const auto profile = application.resource("embedded", "mobileprovision");
  return profile && namesDevelopmentEnvironment(*profile);
}

bool namesDevelopmentEnvironment(std::string_view profile) {
  constexpr std::string_view kOpening = "<string>";
  const bool isASCII = std::ranges::none_of(profile, [](char byte) { return (byte & 0x80) != 0; });
  if (!isASCII || !skipTo(profile, "<key>aps-environment</key>") || !skipTo(profile, kOpening)) {
    return false;
  }
  profile.remove_prefix(kOpening.size());
  const std::size_t end = profile.find("</string>");
  return end != std::string_view::npos && profile.substr(0, end) == "development";
}

}  // namespace ovinta
