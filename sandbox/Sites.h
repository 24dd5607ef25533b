#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "platform/Value.h"

namespace ovinta::sandbox {

/// A place where orders are picked up.
struct Site {
  std::int64_t id;
  std::string_view partnerIdentifier;
  std::string_view name;
  std::string_view phone;
  std::string_view streetAddress;
  std::string_view locality;
  std::string_view region;
  std::string_view postalCode;
  /// Decimal texts in degrees.
  std::string_view latitude;
  std::string_view longitude;
  std::string_view instructions;
  std::string_view description;
  std::string_view beaconUUID;
  std::uint16_t beaconMajor;
  /// Metres.
  int geofenceRadius;
};

/// All sites of the service.
std::span<const Site> sites();

/// The site with that identifier, or null.
const Site* findSite(std::int64_t id);

/// What an order tells of its site and of the project that the site belongs to.
platform::Dictionary orderFields(const Site& site);

}  // namespace ovinta::sandbox
