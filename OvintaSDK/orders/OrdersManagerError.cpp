#include "OvintaSDK/orders/OrdersManagerError.h"

#include "platform/FatalError.h"

namespace ovinta {

std::string_view rawValue(OrdersManagerErrorType type) {
  switch (type) {
    case OrdersManagerErrorType::loadingCustomer:
      return "Could not load customer";
    case OrdersManagerErrorType::loadingApiUrl:
      return "Could not load API url";
    case OrdersManagerErrorType::alreadyFetching:
      return "Already fetching orders";
  }
  platform::fatalError("unexpected enumeration case");
}

OrdersManagerError::OrdersManagerError(OrdersManagerErrorType type)
    : OvintaError(std::string(rawValue(type)), ErrorSubject::ofType("OrdersManager")),
      type_(type) {}

OrdersManagerError::~OrdersManagerError() = default;

}  // namespace ovinta
