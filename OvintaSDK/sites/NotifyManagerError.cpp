#include "OvintaSDK/sites/NotifyManagerError.h"

#include "platform/FatalError.h"

namespace ovinta {
namespace {

std::string_view detailOf(NotifyManagerErrorType type) {
  const bool isTooMany = type == NotifyManagerErrorType::reachedTheMaxNumberOfSites;
  return isTooMany ? "Too many sites. No more than allowed." : "";
}

/// The detail, a text, is what the error is about.
ErrorSubject subjectOf(NotifyManagerErrorType type) {
  return detailOf(type).empty() ? ErrorSubject() : ErrorSubject::ofType("String");
}

}  // namespace

std::string_view rawValue(NotifyManagerErrorType type) {
  switch (type) {
    case NotifyManagerErrorType::noLocationPermission:
      return "Location permission is missing";
    case NotifyManagerErrorType::reachedTheMaxNumberOfSites:
      return "Site limit exceeded";
  }
  platform::fatalError("unexpected enumeration case");
}

NotifyManagerError::NotifyManagerError(NotifyManagerErrorType type)
    : OvintaError(std::string(rawValue(type)), subjectOf(type)), type_(type) {}

NotifyManagerError::~NotifyManagerError() = default;

std::string_view NotifyManagerError::detail() const { return detailOf(type_); }

}  // namespace ovinta
