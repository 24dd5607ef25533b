#include "sandbox/domain/Sites.h"

#include <array>
#include <string>
#include <string_view>

#include "sandbox/domain/WireForms.h"

namespace ovinta::sandbox {
namespace {

using platform::Dictionary;
using platform::Value;

bool isDegrees(const Value& value, Complaint (*check)(const Value&)) {
  const auto* text = value.as<std::string>();
  const auto degrees = text ? parsedNumber(*text) : std::nullopt;
  return degrees && !check(*degrees);
}

Complaint checkLatitudeText(const Value& value) {
  return isDegrees(value, checkLatitude) ? std::nullopt
                                         : Complaint("must be a text with a number from -90 to 90");
}

Complaint checkLongitudeText(const Value& value) {
  return isDegrees(value, checkLongitude)
             ? std::nullopt
             : Complaint("must be a text with a number from -180 to 180");
}

constexpr std::array<FieldRule, 3> kGeofenceRules = {{{"latitude", checkLatitudeText, true},
                                                      {"longitude", checkLongitudeText, true},
                                                      {"radius_meters", checkMetres, true}}};

Complaint checkGeofence(const Value& value) {
  return isRecord(value, kGeofenceRules) ? std::nullopt : Complaint("is no geofence");
}

constexpr std::array<FieldRule, 3> kBeaconRegionRules = {
    {{"uuid", checkUUID, true}, {"major", checkUnsigned16}, {"minor", checkUnsigned16}}};

Complaint checkBeaconRegions(const Value& value) {
  return isRecordList(value, kBeaconRegionRules) ? std::nullopt
                                                 : Complaint("must be a list of beacon regions");
}

constexpr std::array<FieldRule, 20> kSiteRules = {{{"id", checkInteger, true},
                                                   {"partner_identifier", checkText},
                                                   {"name", checkFilledText, true},
                                                   {"phone", checkText},
                                                   {"street_address", checkText},
                                                   {"full_address", checkText},
                                                   {"locality", checkText},
                                                   {"region", checkText},
                                                   {"country", checkText},
                                                   {"postal_code", checkText},
                                                   {"longitude", checkLongitudeText},
                                                   {"latitude", checkLatitudeText},
                                                   {"instructions", checkText},
                                                   {"description", checkText},
                                                   {"cover_photo_url", checkText},
                                                   {"project_accent_color", checkText},
                                                   {"project_accent_text_color", checkText},
                                                   {"project_logo_url", checkText},
                                                   {"geofence", checkGeofence},
                                                   {"beacon_regions", checkBeaconRegions}}};

}  // namespace

std::span<const FieldRule> siteRules() { return kSiteRules; }

Dictionary listedSite(Dictionary site) {
  site.erase("beacon_regions");
  return site;
}

platform::List allSites(const Sites& sites) {
  platform::List list;
  for (const auto& [id, site] : sites) list.emplace_back(site);
  return list;
}

Dictionary orderFields(const Dictionary& site) {
  Dictionary fields = {{"project_mobile_flow_always_show_vehicle_info_fields", true},
                       {"project_mobile_flow_customer_name_editing_enabled", true},
                       {"project_mobile_flow_pickup_type_selection_enabled", true},
                       {"project_mobile_flow_require_vehicle_info_if_visible", false},
                       {"curbside_localized_string", "Curbside"},
                       {"pickup_localized_string", "Pickup"}};
  for (const auto& [key, value] : site) {
    if (key == "geofence") continue;
    fields.emplace(key.starts_with("project_") ? key : "site_" + key, value);
  }
  return fields;
}

}  // namespace ovinta::sandbox
