#include "OvintaSDK/location/BeaconRegion.h"

namespace ovinta {

platform::IdentifiedBeaconRegion BeaconRegion::region() const {
  return {.proximityUUID = uuid,
          .major = major,
          .minor = major ? minor : std::nullopt,
          .identifier = "siteBeaconRegion"};
}

}  // namespace ovinta
