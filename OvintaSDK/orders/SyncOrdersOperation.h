#pragma once

#include <functional>

#include "OvintaSDK/api/OvintaError.h"
#include "OvintaSDK/core/Context.h"
#include "OvintaSDK/orders/OrderTable.h"
#include "platform/OperationQueue.h"

namespace ovinta {

/// Replaces what the order store holds by the summaries of a list of orders, in one transaction.
/// `orders` is asked for the list when the operation runs. The callback, if any, is called once at
/// the end, on the store queue's thread, with the orders, or null and the error. Nothing is
/// retried.
class SyncOrdersOperation final : public platform::Operation {
 public:
  using Callback = std::function<void(OrderTablePtr, ErrorPtr)>;

  SyncOrdersOperation(ContextPtr context, std::function<OrderTablePtr()> orders, Callback callback)
      : context_(std::move(context)), orders_(std::move(orders)), callback_(std::move(callback)) {}

  void main() override;

 private:
  ContextPtr context_;
  std::function<OrderTablePtr()> orders_;
  Callback callback_;
};

}  // namespace ovinta
