#include "OvintaSDK/api/CreateOrderEventOperation.h"

#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/model/wire/OrderEventWire.h"
#include "OvintaSDK/orders/OrdersManager.h"

namespace ovinta {

CreateOrderEventOperation::CreateOrderEventOperation(std::string apiURL, CustomerPtr customer,
                                                     OrderEvent orderEvent, Callback callback)
    : ResultOperation(std::move(apiURL), std::move(callback)),
      customer_(std::move(customer)),
      orderEvent_(std::make_shared<const OrderEvent>(std::move(orderEvent))) {}

std::optional<std::string> CreateOrderEventOperation::body() const {
  return encodeBody(*orderEvent_);
}

void CreateOrderEventOperation::refuse(const std::optional<platform::HTTPResponse>& response,
                                       const std::optional<std::string>& data) {
  if (httpStatusCode(response->statusCode) == HTTPStatusCode::gone) {
    OvintaState::current().orders().markOrderGone(*orderEvent_);
  } else {
    APIOperation::refuse(response, data);
  }
}

}  // namespace ovinta
