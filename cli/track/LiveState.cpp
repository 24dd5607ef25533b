#include "cli/track/LiveState.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "cli/device/ExchangeLog.h"

namespace ovinta::cli {
namespace {

constexpr std::array<std::string_view, 4> kBatteryTexts{"unknown", "on battery", "charging",
                                                        "full"};

std::string positionText(const LiveState& state) {
  const auto& location = state.location.location;
  if (!location) return "none yet";
  const auto age = std::chrono::floor<std::chrono::seconds>(state.now - location->timestamp);
  return placeText(*location) + ", " + std::to_string(std::max<std::int64_t>(0, age.count())) +
         " s ago";
}

std::string accuracyInForce(const ObservedLocation& location) {
  const std::string text = accuracyText(location);
  if (text.empty()) return "positions are not asked for";
  return text + (location.isMonitoringSignificantChanges ? ", and significant changes" : "");
}

/// The UUID comes last, since a narrow terminal cuts the ends of lines.
std::string beaconText(const Beacon& beacon) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.1f dBm, %.1f m: %u/%u of ", beacon.rssi.value,
                beacon.distance.value, beacon.identifiers.major, beacon.identifiers.minor);
  return text.data() + beacon.identifiers.uuid.text();
}

std::vector<std::string> beaconTexts(const ObservedLocation& location) {
  if (location.rangedRegions.empty()) return {"not listened for"};
  std::vector<std::string> texts;
  for (const Beacon& beacon : location.beacons) texts.push_back(beaconText(beacon));
  if (!texts.empty()) return texts;
  return {"none heard of " + std::to_string(location.rangedRegions.size()) + " region(s)"};
}

std::vector<std::string> sentTexts(const LiveState& state) {
  if (!state.lastSent) return {"nothing yet"};
  std::vector<std::string> texts;
  for (const auto& [kind, count] : state.sent) {
    texts.push_back(std::to_string(count) + " x " + kind);
  }
  texts.push_back("last: " + describe(*state.lastSent));
  return texts;
}

void append(std::vector<std::string>& lines, std::string label,
            const std::vector<std::string>& texts) {
  constexpr std::size_t kLabelWidth = 12;
  for (const std::string& text : texts) {
    label.resize(kLabelWidth, ' ');
    lines.push_back(label + text);
    label.clear();
  }
}

}  // namespace

std::string permissionText(bool isEnabled, platform::AuthorizationStatus permission) {
  switch (permission) {
    case platform::kAuthorizationNotDetermined:
      return isEnabled ? "no answer yet" : "no answer yet, nor a location service";
    case platform::kAuthorizationRestricted:
      return "location is switched off for all";
    case platform::kAuthorizationDenied:
      return "refused";
    case platform::kAuthorizedAlways:
      return "granted always";
    case platform::kAuthorizedWhenInUse:
      return "granted while in use";
    default:
      return "number " + std::to_string(permission);
  }
}

std::vector<std::string> liveLines(const LiveState& state) {
  const std::string distance =
      state.distance ? std::to_string(std::lround(*state.distance)) + " m to the nearest site"
                     : "unknown";
  std::vector<std::string> lines{""};
  append(lines, "Permission", {permissionText(state.isEnabled, state.permission)});
  append(lines, "Position", {positionText(state)});
  append(lines, "Distance", {distance});
  append(lines, "Accuracy", {accuracyInForce(state.location)});
  append(lines, "Beacons", beaconTexts(state.location));
  append(lines, "Battery",
         {std::string(kBatteryTexts.at(static_cast<std::size_t>(state.battery)))});
  append(lines, "Sent", sentTexts(state));
  return lines;
}

}  // namespace ovinta::cli
