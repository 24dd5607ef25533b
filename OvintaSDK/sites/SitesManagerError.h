#pragma once

#include <string_view>

#include "OvintaSDK/api/OvintaError.h"
#include "platform/Export.h"

namespace ovinta {

enum class SitesManagerErrorType { loadingApiUrl };

/// The message of errors of that type.
OVINTA_EXPORT std::string_view rawValue(SitesManagerErrorType type);

/// The sites manager refused a request before sending it.
class OVINTA_EXPORT SitesManagerError : public OvintaError {
 public:
  explicit SitesManagerError(SitesManagerErrorType type);
  ~SitesManagerError() override;

  SitesManagerErrorType type() const { return type_; }

 private:
  SitesManagerErrorType type_;
};

}  // namespace ovinta
