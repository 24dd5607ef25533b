#pragma once

#include "OvintaSDK/api/OrderOperation.h"

namespace ovinta {

/// Gets the order of a redemption code.
class GetOrderWithCodeOperation final : public OrderOperation {
 public:
  GetOrderWithCodeOperation(std::string apiURL, std::string redemptionCode, Callback callback)
      : OrderOperation(std::move(apiURL), std::move(callback)),
        redemptionCode_(std::move(redemptionCode)) {}

  std::string_view errorContext() const override { return "finding redeem code"; }

 private:
  Endpoint endpoint() const override { return {.path = APIPath::orderEdit(redemptionCode_)}; }

  std::string redemptionCode_;
};

}  // namespace ovinta
