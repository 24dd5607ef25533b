#pragma once

#include <functional>
#include <optional>

#include "OvintaSDK/api/OvintaError.h"
#include "OvintaSDK/model/Order.h"
#include "platform/OperationQueue.h"

namespace ovinta {

/// Replaces what the order store holds by the summaries of a list of orders, in one transaction.
/// The callback, if any, is called once at the end, on the store queue's thread, with the orders or
/// with the error. Nothing is retried.
class SyncOrdersOperation final : public platform::Operation {
 public:
  using Callback = std::function<void(std::optional<OrderList>, ErrorPtr)>;

  SyncOrdersOperation(OrderList orders, Callback callback)
      : orders_(std::move(orders)), callback_(std::move(callback)) {}

  void main() override;

 private:
  OrderList orders_;
  Callback callback_;
};

}  // namespace ovinta
