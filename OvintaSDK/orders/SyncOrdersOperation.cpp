#include "OvintaSDK/orders/SyncOrdersOperation.h"

#include "OvintaSDK/model/CoreOrder.h"

namespace ovinta {
namespace {

/// Deletes all stored summaries, stores those of the list, and saves. The error is absent on
/// success.
std::optional<platform::StoreError> rebuildStore(platform::PersistentContainer& container,
                                                 const OrderList& orders) {
  const auto context = container.newBackgroundContext();
  if (auto error = context->executeBatchDelete(CoreOrder::fetchRequest())) return error;
  for (const OrderPtr& order : orders) CoreOrder::insert(*order, *context);
  return context->save();
}

}  // namespace

void SyncOrdersOperation::main() {
  OrderTablePtr orders = orders_();
  const auto error = rebuildStore(context_->persistentContainer(), orders->list());
  if (!callback_) return;
  if (error) {
    callback_(nullptr, std::make_shared<OvintaError>(error->localizedDescription,
                                                     ErrorSubject::ofType("SyncOrdersOperation")));
  } else {
    callback_(std::move(orders), nullptr);
  }
}

}  // namespace ovinta
