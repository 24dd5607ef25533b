#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "../../platform/LocationManager.h"
#include "OvintaSDK/model/StateTable.h"

namespace ovinta {

/// The location permission that the customer has granted to the application. The raw values are the
/// platform's (`platform::AuthorizationStatus`): `stateFromRawValue` maps one to the other. The
/// functions may be called from any thread.
enum class LocationAuthStatus : std::int64_t {
  notDetermined = platform::kAuthorizationNotDetermined,
  restricted = platform::kAuthorizationRestricted,
  denied = platform::kAuthorizationDenied,
  authorizedAlways = platform::kAuthorizedAlways,
  authorizedWhenInUse = platform::kAuthorizedWhenInUse
};

template <>
struct StateTable<LocationAuthStatus> {
  static constexpr std::array<StateRow<LocationAuthStatus>, 5> kRows{{
      {LocationAuthStatus::notDetermined, "not_determined"},
      {LocationAuthStatus::restricted, "restricted"},
      {LocationAuthStatus::denied, "denied"},
      {LocationAuthStatus::authorizedAlways, "authorized_always"},
      {LocationAuthStatus::authorizedWhenInUse, "authorized_when_in_use"},
  }};
};

/// The text that stands for the status in JSON, e.g. "authorized_always". A value that is none of
/// the cases ends the process.
inline std::string_view description(LocationAuthStatus status) {
  return stateRow(status).wireString;
}

}  // namespace ovinta
