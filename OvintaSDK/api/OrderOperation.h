#pragma once

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/OrderWire.h"

namespace ovinta {

/// An operation that is answered with one order.
class OrderOperation : public DecodingOperation<OrderPtr> {
 protected:
  using DecodingOperation::DecodingOperation;
  OrderPtr decode(const platform::JSONValue& answer) const final {
    return wire::WireForm<OrderResponse>::decode(answer).data;
  }
};

}  // namespace ovinta
