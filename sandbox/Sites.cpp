#include "sandbox/Sites.h"

#include <algorithm>
#include <array>
#include <string>

namespace ovinta::sandbox {
namespace {

constexpr std::array<Site, 2> kSites = {
    {{.id = 42,
      .partnerIdentifier = "store-42",
      .name = "Madison Square Market",
      .phone = "+1 212 555 0142",
      .streetAddress = "1 Garden Row",
      .locality = "New York",
      .region = "NY",
      .postalCode = "10010",
      .latitude = "40.7411",
      .longitude = "-73.9897",
      .instructions = "Park in a numbered bay and stay in your car.",
      .description = "Bays 1 to 6, beside the north entrance",
      .beaconUUID = "5E1F3C7A-2B64-4D0E-9A5B-0C6D7E8F9A01",
      .beaconMajor = 42,
      .geofenceRadius = 150},
     {.id = 43,
      .partnerIdentifier = "store-43",
      .name = "Harbor Street Market",
      .phone = "+1 617 555 0143",
      .streetAddress = "20 Harbor Street",
      .locality = "Boston",
      .region = "MA",
      .postalCode = "02210",
      .latitude = "42.3519",
      .longitude = "-71.0446",
      .instructions = "Come to the counter at the east door.",
      .description = "East door, next to the bicycle stands",
      .beaconUUID = "5E1F3C7A-2B64-4D0E-9A5B-0C6D7E8F9A01",
      .beaconMajor = 43,
      .geofenceRadius = 100}}};

}  // namespace

std::span<const Site> sites() { return kSites; }

const Site* findSite(std::int64_t id) {
  const auto site = std::ranges::find(kSites, id, &Site::id);
  return site == kSites.end() ? nullptr : &*site;
}

platform::Dictionary orderFields(const Site& site) {
  const std::string street(site.streetAddress);
  const std::string town = std::string(site.locality)
                               .append(", ")
                               .append(site.region)
                               .append(" ")
                               .append(site.postalCode);
  const platform::Dictionary beaconRegion = {{"uuid", site.beaconUUID},
                                             {"major", site.beaconMajor}};
  return {{"site_id", site.id},
          {"site_name", site.name},
          {"site_phone", site.phone},
          {"site_street_address", street},
          {"site_full_address", street + ", " + town},
          {"site_locality", site.locality},
          {"site_region", site.region},
          {"site_country", "US"},
          {"site_postal_code", site.postalCode},
          {"site_longitude", site.longitude},
          {"site_latitude", site.latitude},
          {"site_instructions", site.instructions},
          {"site_description", site.description},
          {"site_cover_photo_url", "https://images.example.com/sites/cover.jpg"},
          {"site_beacon_regions", platform::List{beaconRegion}},
          {"site_partner_identifier", site.partnerIdentifier},
          {"project_accent_color", "#0B6E4F"},
          {"project_accent_text_color", "#FFFFFF"},
          {"project_logo_url", "https://images.example.com/logo.png"},
          {"project_mobile_flow_always_show_vehicle_info_fields", true},
          {"project_mobile_flow_customer_name_editing_enabled", true},
          {"project_mobile_flow_pickup_type_selection_enabled", true},
          {"project_mobile_flow_require_vehicle_info_if_visible", false},
          {"curbside_localized_string", "Curbside"},
          {"pickup_localized_string", "Pickup"}};
}

}  // namespace ovinta::sandbox
