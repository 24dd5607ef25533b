#pragma once

#include <memory>

#include "OvintaSDK/api/ResultOperation.h"
#include "OvintaSDK/model/wire/CustomerWire.h"

namespace ovinta {

/// An operation that is answered with a customer.
class CustomerOperation : public ResultOperation<std::shared_ptr<const Customer>> {
 protected:
  using ResultOperation::ResultOperation;
  std::shared_ptr<const Customer> decode(const platform::JSONValue& answer) const final {
    return std::make_shared<const Customer>(decodeData<Customer>(answer));
  }
};

}  // namespace ovinta
