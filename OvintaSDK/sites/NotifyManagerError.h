#pragma once

#include "../../platform/Export.h"
#include "OvintaSDK/api/ManagerError.h"

namespace ovinta {

/// Why nothing is armed: location services are off or the user may not be followed; there are more
/// sites than `NotifyManager::kMaxNumberOfSites`.
enum class OVINTA_EXPORT NotifyManagerErrorType {
  noLocationPermission,
  reachedTheMaxNumberOfSites
};

template <>
struct ManagerErrorTable<NotifyManagerErrorType> {
  static constexpr std::string_view kContext = "NotifyManager";
  static constexpr ManagerErrorRow<NotifyManagerErrorType> kRows[] = {
      {NotifyManagerErrorType::noLocationPermission, "Location permission is missing"},
      {NotifyManagerErrorType::reachedTheMaxNumberOfSites, "Site limit exceeded",
       "Too many sites. No more than allowed."},
  };
};

/// The notify manager refused to arm notifications: "Location permission is missing" or "Site limit
/// exceeded", the latter with a detail.
using NotifyManagerError = ManagerError<NotifyManagerErrorType>;

extern template class ManagerError<NotifyManagerErrorType>;

}  // namespace ovinta
