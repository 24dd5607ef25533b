#pragma once

#include "OvintaSDK/model/SitesResponse.h"
#include "OvintaSDK/model/wire/RecordCoding.h"

namespace ovinta::wire {

template <>
struct WireTable<Geofence> {
  static constexpr auto kFields =
      table(field("latitude", &Geofence::latitude), field("longitude", &Geofence::longitude),
            field("radius_meters", &Geofence::radiusMeters));
};

template <>
struct WireTable<Site> {
  static constexpr auto kFields = table(
      field("id", &Site::id), field("partner_identifier", &Site::partnerIdentifier),
      field("name", &Site::name), field("phone", &Site::phone),
      field("street_address", &Site::streetAddress), field("full_address", &Site::fullAddress),
      field("locality", &Site::locality), field("region", &Site::region),
      field("country", &Site::country), field("postal_code", &Site::postalCode),
      field("longitude", &Site::longitude), field("latitude", &Site::latitude),
      field("instructions", &Site::instructions), field("description", &Site::descriptionText),
      field("cover_photo_url", &Site::coverPhotoURL),
      field("project_accent_color", &Site::projectAccentColor),
      field("project_accent_text_color", &Site::projectAccentTextColor),
      field("project_logo_url", &Site::projectLogoURL), field("geofence", &Site::geofence));
};

template <>
struct WireTable<Pages> {
  static constexpr auto kFields = table(
      field("next", &Pages::next), field("previous", &Pages::previous),
      field("current", &Pages::current), field("count", &Pages::count), field("per", &Pages::per));
};

template <>
struct WireTable<SitesResponse> {
  static constexpr auto kFields =
      table(field("data", &SitesResponse::data), field("pages", &SitesResponse::pages));
};

}  // namespace ovinta::wire
