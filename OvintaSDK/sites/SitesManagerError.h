#pragma once

#include "../../platform/Export.h"
#include "OvintaSDK/api/ManagerError.h"

namespace ovinta {

/// Why a request is refused: no base URL is stored.
enum class OVINTA_EXPORT SitesManagerErrorType { loadingApiUrl };

template <>
struct ManagerErrorTable<SitesManagerErrorType> {
  static constexpr std::string_view kContext = "SitesManager";
  static constexpr ManagerErrorRow<SitesManagerErrorType> kRows[] = {
      {SitesManagerErrorType::loadingApiUrl, "Could not load API url"},
  };
};

/// The sites manager refused a request: "Could not load API url".
using SitesManagerError = ManagerError<SitesManagerErrorType>;

extern template class ManagerError<SitesManagerErrorType>;

}  // namespace ovinta
