#include "OvintaSDK/core/SDKNotifications.h"
#include "OvintaSDK/core/facade/Ovinta.h"
#include "OvintaSDK/model/wire/OrderWire.h"
#include "fuzz/Platform.h"
#include "fuzz/Target.h"
#include "platform/JSON.h"
#include "platform/Services.h"
#include "tests/support/CannedRecords.h"
#include "tests/support/WireText.h"

namespace ovinta::fuzz {
namespace {

void run(std::string_view input) {
  static Platform& platform = Platform::shared();
  const auto payload = platform::parseJSON(input);
  const auto* userInfo = payload ? payload->as<platform::Dictionary>() : nullptr;
  if (!userInfo) return;

  OrderPtr updated;
  const auto observer = platform::services().notificationCenter->addObserver(
      SDKNotification::orderUpdated, [&updated](const platform::Notification& notification) {
        require(!updated, "a push tells of an order once");
        if (const auto* order = notification.objectAs<OrderPtr>()) updated = *order;
        require(updated != nullptr, "what is told of is an order");
      });
  int refused = 0;
  const auto failures = platform::services().notificationCenter->addObserver(
      SDKNotification::ordersError, [&refused](const auto&) { ++refused; });

  // With no customer, a fetch is refused at once.
  const OrderPtr known = test::decodeOrder(test::kFullOrderText);
  Ovinta::orders().setAll(OrderList{known});
  Ovinta::handleRemoteNotification(*userInfo);
  require((refused == 1) != (updated != nullptr), "a push moves its order on, or asks for all");
  if (updated) {
    require(updated == known, "only a known order is moved on");
    require(test::decodeOrder(test::encoded(known))->etaAt() == known->etaAt(),
            "an order can be written and read after a push");
  }
  platform.reset();
}

const Target kTarget("push", run);

}  // namespace
}  // namespace ovinta::fuzz
