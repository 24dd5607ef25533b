#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/OrderWire.h"

namespace ovinta {

/// Gets the order of a redemption code.
class GetOrderWithCodeOperation final : public RecordOperation<OrderResponse> {
 public:
  GetOrderWithCodeOperation(APIClient api, std::string redemptionCode, Callback callback)
      : RecordOperation(std::move(api), std::move(callback)),
        redemptionCode_(std::move(redemptionCode)) {}

  std::string_view errorContext() const override { return "finding redeem code"; }

 private:
  Endpoint endpoint() const override { return {.path = APIPath::orderEdit(redemptionCode_)}; }

  std::string redemptionCode_;
};

}  // namespace ovinta
