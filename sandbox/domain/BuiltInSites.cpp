#include <array>
#include <string>
#include <string_view>

#include "sandbox/domain/Sites.h"

namespace ovinta::sandbox {
namespace {

constexpr std::string_view kBeaconUUID = "5E1F3C7A-2B64-4D0E-9A5B-0C6D7E8F9A01";

struct City {
  std::string_view locality;
  std::string_view region;
  std::string_view areaCode;
};

constexpr City kNewYork = {"New York", "NY", "212"};
constexpr City kBoston = {"Boston", "MA", "617"};
constexpr City kChicago = {"Chicago", "IL", "312"};

constexpr std::string_view kBays = "Park in a numbered bay and stay in your car.";
constexpr std::string_view kCounter = "Come to the counter at the east door.";

/// What tells one site from the others.
struct BuiltInSite {
  int id;
  std::string_view name;
  std::string_view street;
  const City& city;
  std::string_view postalCode;
  /// Decimal texts in degrees.
  std::string_view latitude;
  std::string_view longitude;
  /// The radius of the geofence in metres.
  int radius;
  std::string_view instructions;
  std::string_view description;
};

constexpr std::array<BuiltInSite, 14> kSites = {{
    {42, "Madison Square Market", "1 Garden Row", kNewYork, "10010", "40.7411", "-73.9897", 150,
     kBays, "Bays 1 to 6, beside the north entrance"},
    {43, "Harbor Street Market", "20 Harbor Street", kBoston, "02210", "42.3519", "-71.0446", 100,
     kCounter, "East door, next to the bicycle stands"},
    {44, "Pier Row Market", "8 Pier Row", kNewYork, "10011", "40.7465", "-74.0014", 150, kBays,
     "Bays 1 to 4, along the river"},
    {45, "Canal Corner Market", "75 Canal Corner", kNewYork, "10013", "40.7196", "-74.0026", 120,
     kCounter, "East door, under the clock"},
    {46, "Orchard Lane Market", "31 Orchard Lane", kNewYork, "10002", "40.7193", "-73.9903", 100,
     kCounter, "East door, beside the bakery"},
    {47, "Park Gate Market", "402 Park Gate", kNewYork, "10024", "40.7829", "-73.9742", 200, kBays,
     "Bays 1 to 8, lower level"},
    {48, "Brook Terrace Market", "9 Brook Terrace", kNewYork, "10128", "40.7812", "-73.9511", 150,
     kBays, "Bays 1 to 3, at the back"},
    {49, "Common Green Market", "14 Common Green", kBoston, "02116", "42.3523", "-71.0685", 120,
     kCounter, "East door, facing the park"},
    {50, "Mill Wharf Market", "3 Mill Wharf", kBoston, "02109", "42.3610", "-71.0515", 100, kBays,
     "Bays 1 to 5, on the wharf"},
    {51, "College Bridge Market", "220 College Bridge", kBoston, "02215", "42.3496", "-71.1003",
     150, kBays, "Bays 1 to 6, under the bridge"},
    {52, "Lake Front Market", "500 Lake Front", kChicago, "60601", "41.8858", "-87.6168", 200,
     kBays, "Bays 1 to 10, level P1"},
    {53, "River Bend Market", "66 River Bend", kChicago, "60654", "41.8900", "-87.6376", 150, kBays,
     "Bays 1 to 4, by the footbridge"},
    {54, "Prairie Avenue Market", "1800 Prairie Avenue", kChicago, "60616", "41.8570", "-87.6210",
     150, kCounter, "East door, across from the school"},
    {55, "Old Town Hall Market", "12 Town Hall Place", kChicago, "60614", "41.9110", "-87.6376",
     120, kCounter, "East door, left of the stairs"},
}};

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const std::string_view part : parts) text += part;
  return text;
}

platform::Dictionary siteAt(const BuiltInSite& place) {
  const City& city = place.city;
  const std::string id = std::to_string(place.id);
  return {{"id", place.id},
          {"partner_identifier", "store-" + id},
          {"name", place.name},
          {"phone", joined({"+1 ", city.areaCode, " 555 01", id})},
          {"street_address", place.street},
          {"full_address",
           joined({place.street, ", ", city.locality, ", ", city.region, " ", place.postalCode})},
          {"locality", city.locality},
          {"region", city.region},
          {"country", "US"},
          {"postal_code", place.postalCode},
          {"longitude", place.longitude},
          {"latitude", place.latitude},
          {"instructions", place.instructions},
          {"description", place.description},
          {"cover_photo_url", "https://images.example.com/sites/cover.jpg"},
          {"project_accent_color", "#0B6E4F"},
          {"project_accent_text_color", "#FFFFFF"},
          {"project_logo_url", "https://images.example.com/logo.png"},
          {"geofence", platform::Dictionary{{"latitude", place.latitude},
                                            {"longitude", place.longitude},
                                            {"radius_meters", place.radius}}},
          {"beacon_regions",
           platform::List{platform::Dictionary{{"uuid", kBeaconUUID}, {"major", place.id}}}}};
}

}  // namespace

Sites builtInSites() {
  Sites sites;
  for (const BuiltInSite& place : kSites) sites.emplace(place.id, siteAt(place));
  return sites;
}

}  // namespace ovinta::sandbox
