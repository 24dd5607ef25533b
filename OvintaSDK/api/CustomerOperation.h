#pragma once

#include <memory>

#include "OvintaSDK/api/DecodingOperation.h"
#include "OvintaSDK/model/wire/CustomerWire.h"

namespace ovinta {

/// An operation that is answered with a customer.
class CustomerOperation : public DecodingOperation<std::shared_ptr<const Customer>> {
 protected:
  using DecodingOperation::DecodingOperation;
  std::shared_ptr<const Customer> decode(const platform::JSONValue& answer) const final {
    return decodeData<std::shared_ptr<const Customer>>(answer);
  }
};

}  // namespace ovinta
