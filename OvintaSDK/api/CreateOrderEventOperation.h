#pragma once

#include "OvintaSDK/api/ResultOperation.h"
#include "OvintaSDK/model/Customer.h"
#include "OvintaSDK/model/OrderEvent.h"

namespace ovinta {

/// Reports an order event; the callback receives the event that was sent. When the service answers
/// that the order is gone, the orders manager is told and the callback is never called.
class CreateOrderEventOperation final : public ResultOperation<std::shared_ptr<const OrderEvent>> {
 public:
  CreateOrderEventOperation(std::string apiURL, CustomerPtr customer, OrderEvent orderEvent,
                            Callback callback);

  std::string_view errorContext() const override { return "creating order event"; }

 private:
  Endpoint endpoint() const override {
    return {.path = APIPath::events(), .method = "POST", .token = customer_->token};
  }
  std::optional<std::string> body() const override;
  /// The answer's body is not read.
  void succeed(const std::string& /*data*/) override { report(orderEvent_); }
  void refuse(const std::optional<platform::HTTPResponse>& response,
              const std::optional<std::string>& data) override;

  CustomerPtr customer_;
  std::shared_ptr<const OrderEvent> orderEvent_;
};

}  // namespace ovinta
