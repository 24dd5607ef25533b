#include "OvintaSDK/orders/SyncOrdersOperation.h"

#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/model/CoreOrder.h"

namespace ovinta {
namespace {

/// Deletes all stored summaries, stores those of the list, and saves; absent on success.
std::optional<platform::StoreError> rebuildStore(const OrderList& orders) {
  const auto context = OvintaState::current().persistentContainer().newBackgroundContext();
  if (auto error = context->executeBatchDelete(CoreOrder::fetchRequest())) return error;
  for (const OrderPtr& order : orders) CoreOrder::insert(*order, *context);
  return context->save();
}

}  // namespace

void SyncOrdersOperation::main() {
  const auto error = rebuildStore(orders_);
  if (!callback_) return;
  if (error) {
    callback_(std::nullopt,
              std::make_shared<OvintaError>(error->localizedDescription,
                                            ErrorSubject::ofType("SyncOrdersOperation")));
  } else {
    callback_(std::move(orders_), nullptr);
  }
}

}  // namespace ovinta
