#pragma once

#include "OvintaSDK/api/ResultOperation.h"
#include "OvintaSDK/model/wire/OrderWire.h"

namespace ovinta {

/// An operation that is answered with one order.
class OrderOperation : public ResultOperation<OrderPtr> {
 protected:
  using ResultOperation::ResultOperation;
  OrderPtr decode(const platform::JSONValue& answer) const final {
    return decodeData<OrderPtr>(answer);
  }
};

}  // namespace ovinta
