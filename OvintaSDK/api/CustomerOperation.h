#pragma once

#include <memory>

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/CustomerWire.h"

namespace ovinta {

/// An operation that is answered with a customer.
class CustomerOperation : public DecodingOperation<CustomerPtr> {
 protected:
  using DecodingOperation::DecodingOperation;
  CustomerPtr decode(const platform::JSONValue& answer) const final {
    return wire::WireForm<wire::CustomerResponse>::decode(answer).data;
  }
};

}  // namespace ovinta
