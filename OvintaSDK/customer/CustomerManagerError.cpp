#include "OvintaSDK/customer/CustomerManagerError.h"

#include "platform/FatalError.h"

namespace ovinta {

std::string_view rawValue(CustomerManagerErrorType type) {
  switch (type) {
    case CustomerManagerErrorType::loadingApiUrl:
      return "Could not load API url";
    case CustomerManagerErrorType::loadingCustomer:
      return "Could not load customer";
    case CustomerManagerErrorType::missingCustomerConsent:
      return "Missing customer consent";
  }
  platform::fatalError("unexpected enumeration case");
}

CustomerManagerError::CustomerManagerError(CustomerManagerErrorType type)
    : OvintaError(std::string(rawValue(type)), ErrorSubject::ofType("CustomerManager")),
      type_(type) {}

CustomerManagerError::~CustomerManagerError() = default;

}  // namespace ovinta
