#pragma once

#include "OvintaSDK/api/ResultOperation.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/wire/OrderEventWire.h"

namespace ovinta {

/// Reports an order event; the callback receives the event that was sent. When the service answers
/// that the order is gone, `onGone` is told instead.
class CreateOrderEventOperation final : public ResultOperation<std::shared_ptr<const OrderEvent>> {
 public:
  using GoneHandler = std::function<void(const OrderEvent&)>;

  CreateOrderEventOperation(APIClient api, CustomerPtr customer, OrderEvent orderEvent,
                            GoneHandler onGone, Callback callback)
      : ResultOperation(std::move(api), std::move(callback)),
        customer_(std::move(customer)),
        orderEvent_(std::make_shared<const OrderEvent>(std::move(orderEvent))),
        onGone_(std::move(onGone)) {}

  std::string_view errorContext() const override { return "creating order event"; }

 private:
  Endpoint endpoint() const override {
    return {.path = APIPath::events(), .method = "POST", .token = customer_->token};
  }
  std::optional<std::string> body() const override { return encodeBody(*orderEvent_); }
  /// The answer's body is not read.
  void succeed(std::string /*data*/) override { report(orderEvent_); }
  void refuse(const std::optional<platform::HTTPResponse>& response,
              const std::optional<std::string>& data) override {
    if (httpStatusCode(response->statusCode) == HTTPStatusCode::gone) {
      onGone_(*orderEvent_);
    } else {
      APIOperation::refuse(response, data);
    }
  }

  CustomerPtr customer_;
  std::shared_ptr<const OrderEvent> orderEvent_;
  GoneHandler onGone_;
};

}  // namespace ovinta
