#include "platform/simulation/trip/Trip.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <optional>
#include <string>
#include <utility>

#include "platform/FatalError.h"
#include "platform/portable/GreatCircle.h"
#include "platform/simulation/trip/XML.h"

namespace ovinta::platform::simulation {
namespace {

using xml::Malformed;
using xml::Range;

constexpr std::string_view kTripNamespace = "urn:ovinta:trip";
constexpr Range kLatitude{-90, 90};
constexpr Range kLongitude{-180, 180};
/// The limits of what a file may say, each beyond what any trip on Earth has, so that all that is
/// computed of them stays finite.
constexpr Range kMetres{0, 1e8};
constexpr Range kMetresPerSecond{0, 1e8};
constexpr Range kDecibels{0, 100};
constexpr Range kDilution{0, 1e6};
constexpr std::chrono::hours kLongestTrip = std::chrono::days(366);
constexpr std::size_t kLargestFile = std::size_t{64} << 20;
constexpr Range kUnsigned16{0, 65'535};

Coordinate coordinateOf(pugi::xml_node node) {
  return {xml::numberAttribute(node, "lat", kLatitude),
          xml::numberAttribute(node, "lon", kLongitude)};
}

TimeInterval seconds(double value) {
  return std::chrono::round<TimeInterval>(std::chrono::duration<double>(value));
}

/// The time since the trip began that the attribute tells, in seconds.
TimeInterval offset(pugi::xml_node node, const char* name) {
  constexpr Range kUpToADay{0, 86'400};
  return seconds(xml::numberAttribute(node, name, kUpToADay));
}

TimeInterval after(pugi::xml_node node) { return offset(node, "after"); }

bool isTripElement(pugi::xml_node node, std::string_view name) {
  return xml::localName(node) == name && xml::namespaceName(node) == kTripNamespace;
}

/// Turns the points of a file into those of a trip, one after the other.
class PointReader {
 public:
  explicit PointReader(Trip& trip) : trip_(trip) {}

  void read(pugi::xml_node node) {
    TripPoint point;
    point.coordinate = coordinateOf(node);
    if (const auto speed = speedOf(node)) point.speed = speed_ = *speed;
    point.accuracy = accuracyOf(node);
    const auto time = xml::child(node, "time");
    point.offset = time ? offsetOf(time) : offsetByWay(node, point.coordinate);
    if (!trip_.points.empty() && point.offset < trip_.points.back().offset) {
      throw Malformed{"time goes back", node};
    }
    if (point.offset > kLongestTrip) throw Malformed{"the trip is longer than a year", node};
    trip_.points.push_back(point);
  }

 private:
  static std::optional<double> speedOf(pugi::xml_node node) {
    auto speed = xml::child(node, "speed");
    if (!speed) {
      speed = xml::child(node, "extensions").find_node([](pugi::xml_node inner) {
        return xml::localName(inner) == "speed";
      });
    }
    if (!speed) return {};
    return xml::number(speed.child_value(), "speed", kMetresPerSecond, speed);
  }

  static double accuracyOf(pugi::xml_node node) {
    for (const auto inner : xml::child(node, "extensions").children()) {
      if (isTripElement(inner, "accuracy")) {
        return xml::number(inner.child_value(), "accuracy", kMetres, inner);
      }
    }
    if (const auto dilution = xml::child(node, "hdop")) {
      return kMetresPerDilution * xml::number(dilution.child_value(), "hdop", kDilution, dilution);
    }
    return TripPoint{}.accuracy;
  }

  TimeInterval offsetOf(pugi::xml_node time) {
    const auto date = xml::instant(time.child_value(), time);
    if (trip_.points.empty()) start_ = trip_.start = date;
    if (!start_) throw Malformed{"a time needs one at the first point too", time};
    return date - *start_;
  }

  TimeInterval offsetByWay(pugi::xml_node node, Coordinate coordinate) const {
    if (trip_.points.empty()) return {};
    if (speed_ <= 0) throw Malformed{"a point has neither a time nor a speed above zero", node};
    const auto& last = trip_.points.back();
    const double way = portable::greatCircleDistance(last.coordinate, coordinate) / speed_;
    if (!(way < std::chrono::duration<double>(kLongestTrip - last.offset).count())) {
      throw Malformed{"a point takes longer to reach than any trip", node};
    }
    return last.offset + seconds(way);
  }

  Trip& trip_;
  std::optional<Date> start_;
  double speed_ = 0;
};

TripBeacon beaconOf(pugi::xml_node node) {
  const auto uuid = UUID::parse(node.attribute("uuid").value());
  if (!uuid) throw Malformed{"uuid is missing or no UUID", node};
  TripBeacon beacon;
  beacon.proximityUUID = *uuid;
  beacon.major = static_cast<std::uint16_t>(xml::numberAttribute(node, "major", kUnsigned16));
  beacon.minor = static_cast<std::uint16_t>(xml::numberAttribute(node, "minor", kUnsigned16));
  beacon.coordinate = coordinateOf(node);
  beacon.range = xml::numberAttribute(node, "range", kMetres, beacon.range);
  beacon.measuredPower = xml::numberAttribute(node, "power", {-127, 0}, beacon.measuredPower);
  beacon.noise = xml::numberAttribute(node, "noise", kDecibels, beacon.noise);
  return beacon;
}

TripBatteryChange batteryChangeOf(pugi::xml_node node) {
  const std::string_view name = node.attribute("state").value();
  const auto& names = kBatteryStateNames;
  const auto* const found = std::ranges::find(names, name);
  if (found == names.end()) {
    throw Malformed{"state is missing or no battery state: \"" + std::string(name) + "\"", node};
  }
  return {after(node), static_cast<BatteryState>(found - names.begin())};
}

TripTunnel tunnelOf(pugi::xml_node node) {
  const TripTunnel tunnel{offset(node, "from"), offset(node, "to")};
  if (tunnel.to <= tunnel.from) throw Malformed{"a tunnel ends where it begins or before", node};
  return tunnel;
}

void readExtensions(pugi::xml_node extensions, Trip& trip) {
  constexpr Range kStatus{0, 100};
  for (const auto node : extensions.children()) {
    if (xml::namespaceName(node) != kTripNamespace) continue;
    if (isTripElement(node, "beacon")) {
      trip.beacons.push_back(beaconOf(node));
    } else if (isTripElement(node, "permission")) {
      const auto status = xml::numberAttribute(node, "status", kStatus);
      trip.permissionChanges.push_back({after(node), static_cast<AuthorizationStatus>(status)});
    } else if (isTripElement(node, "battery")) {
      trip.batteryChanges.push_back(batteryChangeOf(node));
    } else if (isTripElement(node, "tunnel")) {
      trip.tunnels.push_back(tunnelOf(node));
    } else {
      throw Malformed{"unknown element " + std::string(node.name()), node};
    }
  }
}

std::vector<pugi::xml_node> pointsOf(pugi::xml_node gpx) {
  std::vector<pugi::xml_node> found;
  const auto add = [&](pugi::xml_node parent, std::string_view name) {
    const auto points = xml::children(parent, name);
    found.insert(found.end(), points.begin(), points.end());
  };
  for (const auto track : xml::children(gpx, "trk")) {
    for (const auto segment : xml::children(track, "trkseg")) add(segment, "trkpt");
  }
  if (!found.empty()) return found;
  for (const auto route : xml::children(gpx, "rte")) add(route, "rtept");
  return found;
}

Trip read(pugi::xml_node gpx) {
  if (xml::localName(gpx) != "gpx") throw Malformed{"the outermost element is not gpx", gpx};
  Trip trip;
  PointReader reader(trip);
  for (const auto point : pointsOf(gpx)) reader.read(point);
  if (trip.points.empty()) throw Malformed{"there are no track or route points", {}};
  readExtensions(xml::child(gpx, "extensions"), trip);
  readExtensions(xml::child(xml::child(gpx, "metadata"), "extensions"), trip);
  return trip;
}

std::string atLine(std::string_view text, std::ptrdiff_t offset, const std::string& message) {
  if (offset < 0) return message;
  const auto before = text.substr(0, static_cast<std::size_t>(offset));
  return "line " + std::to_string(1 + std::ranges::count(before, '\n')) + ": " + message;
}

}  // namespace

Trip Trip::along(const std::vector<Coordinate>& way, double speed,
                 std::vector<TripTunnel> tunnels) {
  if (way.empty() || !(speed > 0)) fatalError("A trip needs a point and a speed above zero");
  Trip trip;
  trip.tunnels = std::move(tunnels);
  trip.points.push_back({.coordinate = way.front(), .speed = speed, .accuracy = 0});
  for (std::size_t index = 1; index < way.size(); ++index) {
    const double metres = portable::greatCircleDistance(way[index - 1], way[index]);
    trip.points.push_back({.offset = trip.points.back().offset + seconds(metres / speed),
                           .coordinate = way[index],
                           .speed = speed,
                           .accuracy = 0});
  }
  return trip;
}

std::variant<Trip, std::string> Trip::fromGPXText(std::string_view text) {
  pugi::xml_document document;
  const auto parsed = document.load_buffer(text.data(), text.size());
  if (!parsed) return atLine(text, parsed.offset, parsed.description());
  try {
    return read(document.document_element());
  } catch (const Malformed& malformed) {
    const auto offset = malformed.node ? malformed.node.offset_debug() : -1;
    return atLine(text, offset, malformed.message);
  }
}

std::variant<Trip, std::string> Trip::fromGPX(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string content;
  std::array<char, 65'536> piece;
  while (stream && content.size() <= kLargestFile) {
    stream.read(piece.data(), piece.size());
    content.append(piece.data(), static_cast<std::size_t>(stream.gcount()));
  }
  if (content.size() > kLargestFile) return file.string() + ": the file is larger than 64 MiB";
  if (!stream.eof()) return file.string() + ": the file cannot be read";
  auto reading = fromGPXText(content);
  if (auto* error = std::get_if<std::string>(&reading)) error->insert(0, file.string() + ": ");
  return reading;
}

}  // namespace ovinta::platform::simulation
