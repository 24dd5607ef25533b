#include "OvintaSDK/sites/SitesManagerError.h"

#include "platform/FatalError.h"

namespace ovinta {

std::string_view rawValue(SitesManagerErrorType type) {
  switch (type) {
    case SitesManagerErrorType::loadingApiUrl:
      return "Could not load API url";
  }
  platform::fatalError("unexpected enumeration case");
}

SitesManagerError::SitesManagerError(SitesManagerErrorType type)
    : OvintaError(std::string(rawValue(type)), ErrorSubject::ofType("SitesManager")), type_(type) {}

SitesManagerError::~SitesManagerError() = default;

}  // namespace ovinta
